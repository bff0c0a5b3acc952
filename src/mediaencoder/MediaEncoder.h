/*
 * MediaEncoder: the recording encoder library (libMediaEncoder.so).
 *
 * Takes raw BGRA picture frames with millisecond timestamps and interleaved 32-bit
 * audio, encodes and multiplexes them into one file (or a series of files when a
 * time or size limit splits the recording), and reports how much it has written.
 *
 * Calling order for one recording:
 *   apiEncoderCreate
 *   apiEncoderSetOutputPath, apiEncoderSetImageSize, apiEncoderSetImageFormat,
 *   apiEncoderSetOutputSize, apiEncoderSetFps, apiEncoderSetVideoBitrate,
 *   apiEncoderSetAudioSrcContext, apiEncoderSetAudioBitrate,
 *   apiEncoderSetAudioEncodeContext, apiEncoderSetLimitTime, apiEncoderSetLimitSize
 *   apiEncoderEncode
 *   apiEncoderPushVideo / apiEncoderPushAudio, any number, from any thread
 *   apiEncodePushVideoTrailer, apiEncodePushAudioTrailer
 *   apiEncodeIsDone until it answers 1
 *   apiEncoderClose
 *
 * Results: negative means failure, unless an operation says otherwise.
 * Ownership: records passed in are the caller's; the library copies what it keeps
 * before the call returns. The handle is released by apiEncoderClose only.
 * Threads: every call is safe from any thread; encoding runs on the library's own
 * threads and pushes return quickly.
 */
#ifndef CAPSTAN_MEDIAENCODER_H
#define CAPSTAN_MEDIAENCODER_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define MEDIAENCODER_API __attribute__((visibility("default")))
#else
#define MEDIAENCODER_API
#endif

/* Opaque handle of one recording. */
typedef void *EncoderHandle;

/* Pixel format code of 8-bit BGRA rows (B, G, R, A bytes in memory). */
#define MEDIAENCODER_PIXEL_FORMAT_BGRA 1005
/* Image format code the recorder sets with apiEncoderSetImageFormat. */
#define MEDIAENCODER_IMAGE_FORMAT_DEFAULT 1000
/* Audio source format code: interleaved 32-bit signed samples. */
#define MEDIAENCODER_AUDIO_FORMAT_S32 2

/* One picture frame; 32 bytes. */
typedef struct VIDEO_PACKET {
    int32_t format;      /* pixel format code, MEDIAENCODER_PIXEL_FORMAT_BGRA */
    int32_t width;       /* pixels */
    int32_t height;      /* pixels */
    int32_t bytesPerRow; /* of plane 0 */
    uint8_t *data;       /* first pixel */
    int32_t dataSize;    /* bytes */
} VIDEO_PACKET;

/* One buffer of interleaved 4-byte samples; 16 bytes. */
typedef struct AudioFrame {
    uint8_t *buffer;
    int32_t size; /* bytes */
} AudioFrame;

MEDIAENCODER_API EncoderHandle apiEncoderCreate(void);
/* UTF-8 path; its extension chooses the container. */
MEDIAENCODER_API int apiEncoderSetOutputPath(EncoderHandle handle, const char *path);
MEDIAENCODER_API int apiEncoderSetImageSize(EncoderHandle handle, int32_t width, int32_t height);
MEDIAENCODER_API int apiEncoderSetImageFormat(EncoderHandle handle, int32_t format);
MEDIAENCODER_API int apiEncoderSetOutputSize(EncoderHandle handle, int32_t width, int32_t height);
MEDIAENCODER_API int apiEncoderSetFps(EncoderHandle handle, double fps);
/* kbit/s */
MEDIAENCODER_API int apiEncoderSetVideoBitrate(EncoderHandle handle, double bitrate);
/* format: MEDIAENCODER_AUDIO_FORMAT_S32 */
MEDIAENCODER_API int apiEncoderSetAudioSrcContext(EncoderHandle handle, int32_t channels,
                                                  int32_t sampleRate, int32_t format);
/* units of 10 bit/s: 12800 is 128 kbit/s */
MEDIAENCODER_API int apiEncoderSetAudioBitrate(EncoderHandle handle, double bitrate);
MEDIAENCODER_API int apiEncoderSetAudioEncodeContext(EncoderHandle handle, int32_t channels,
                                                     int32_t sampleRate);
/* Seconds per file, 0 for no limit. Answers 1 on success. */
MEDIAENCODER_API int apiEncoderSetLimitTime(EncoderHandle handle, int32_t seconds);
/* MB per file, 0 for no limit. Answers 1 on success. */
MEDIAENCODER_API int apiEncoderSetLimitSize(EncoderHandle handle, int32_t megabytes);
MEDIAENCODER_API int apiEncoderEncode(EncoderHandle handle);
MEDIAENCODER_API int apiEncoderPushVideo(EncoderHandle handle, VIDEO_PACKET *packet, int64_t ptsMs);
MEDIAENCODER_API int apiEncoderPushAudio(EncoderHandle handle, AudioFrame *frame);
/* Milliseconds of picture encoded (of sound when there is no picture). */
MEDIAENCODER_API int64_t apiEncoderGetEncodedTimestamp(EncoderHandle handle);
/* Bytes written to all files of the recording. */
MEDIAENCODER_API int64_t apiEncoderGetFileSize(EncoderHandle handle);
MEDIAENCODER_API int apiEncodePushVideoTrailer(EncoderHandle handle);
MEDIAENCODER_API int apiEncodePushAudioTrailer(EncoderHandle handle);
/* 1 when everything pushed is written. */
MEDIAENCODER_API int apiEncodeIsDone(EncoderHandle handle);
MEDIAENCODER_API int apiEncoderClose(EncoderHandle handle);

#ifdef __cplusplus
}
#endif

#endif /* CAPSTAN_MEDIAENCODER_H */
