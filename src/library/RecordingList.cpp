#include "RecordingList.h"

#include "Log.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cstdio>
#include <cstdlib>
#include <limits>

RecordingRecord RecordingRecord::movie(const QString &path, float duration, float size,
                                       const QString &date, bool audioOnly)
{
    return {path, QFileInfo(path).fileName(), duration,    size,
            date, audioOnly ? 0 : 1,          std::nullopt};
}

RecordingRecord RecordingRecord::screenshot(const QString &path, quint64 size, const QString &date)
{
    return {path, QFileInfo(path).fileName(), qint64(0), size, date, std::nullopt, 1};
}

RecordingList::RecordingList() : array_(plist_new_array()) {}

RecordingList::RecordingList(PlistPtr array) : array_(std::move(array)) {}

RecordingList RecordingList::read(const QString &plistPath)
{
    QFile file(plistPath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray data = file.readAll();
    if (data.isEmpty() || data.size() > std::numeric_limits<uint32_t>::max())
        return {};
    plist_t root = nullptr;
    if (plist_is_binary(data.constData(), uint32_t(data.size())))
        plist_from_bin(data.constData(), uint32_t(data.size()), &root);
    else
        plist_from_xml(data.constData(), uint32_t(data.size()), &root);
    PlistPtr owned(root);
    if (!owned || plist_get_node_type(owned.get()) != PLIST_ARRAY)
        return {};
    return RecordingList(std::move(owned));
}

qsizetype RecordingList::count() const
{
    return plist_array_get_size(array_.get());
}

static QVariant valueOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_STRING: {
        char *text = nullptr;
        plist_get_string_val(node, &text);
        const QString value = QString::fromUtf8(text);
        std::free(text);
        return value;
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return qulonglong(value);
    }
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return bool(value);
    }
    default:
        return {};
    }
}

QVariantMap RecordingList::recordAt(qsizetype index) const
{
    QVariantMap record;
    plist_t dict = plist_array_get_item(array_.get(), uint32_t(index));
    if (!dict || plist_get_node_type(dict) != PLIST_DICT)
        return record;
    plist_dict_iter it = nullptr;
    plist_dict_new_iter(dict, &it);
    for (;;) {
        char *key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(dict, it, &key, &value);
        if (!key)
            break;
        record.insert(QString::fromUtf8(key), valueOf(value));
        std::free(key);
    }
    std::free(it);
    return record;
}

static QVariant itemOf(plist_t array, qsizetype index, const char *key)
{
    plist_t dict = plist_array_get_item(array, uint32_t(index));
    if (!dict || plist_get_node_type(dict) != PLIST_DICT)
        return {};
    plist_t node = plist_dict_get_item(dict, key);
    return node ? valueOf(node) : QVariant();
}

QString RecordingList::pathAt(qsizetype index) const
{
    const QVariant path = itemOf(array_.get(), index, "path");
    return path.typeId() == QMetaType::QString ? path.toString() : QString();
}

bool RecordingList::isImageAt(qsizetype index) const
{
    return itemOf(array_.get(), index, "isImage").toLongLong() != 0;
}

void RecordingList::insertAtFront(const RecordingRecord &record)
{
    plist_t dict = plist_new_dict();
    auto setString = [&](const char *key, const QString &value) {
        plist_dict_set_item(dict, key, plist_new_string(value.toUtf8().constData()));
    };
    setString("path", record.path);
    setString("name", record.name);
    std::visit(
        [&](auto v) {
            if constexpr (std::is_same_v<decltype(v), float>)
                plist_dict_set_item(dict, "duration", plist_new_real(v));
            else
                plist_dict_set_item(dict, "duration", plist_new_uint(uint64_t(v)));
        },
        record.duration);
    std::visit(
        [&](auto v) {
            if constexpr (std::is_same_v<decltype(v), float>)
                plist_dict_set_item(dict, "size", plist_new_real(v));
            else
                plist_dict_set_item(dict, "size", plist_new_uint(v));
        },
        record.size);
    setString("date", record.date);
    if (record.isVideo)
        plist_dict_set_item(dict, "isVideo", plist_new_uint(uint64_t(*record.isVideo)));
    if (record.isImage)
        plist_dict_set_item(dict, "isImage", plist_new_uint(uint64_t(*record.isImage)));
    if (count() == 0)
        plist_array_append_item(array_.get(), dict);
    else
        plist_array_insert_item(array_.get(), dict, 0);
}

int RecordingList::removeRecordsWithPath(const QString &path)
{
    int removed = 0;
    for (qsizetype i = count() - 1; i >= 0; --i) {
        if (pathAt(i) == path) {
            plist_array_remove_item(array_.get(), uint32_t(i));
            ++removed;
        }
    }
    return removed;
}

bool RecordingList::writeAtomically(const QString &plistPath) const
{
    char *xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(array_.get(), &xml, &length);
    if (!xml)
        return false;
    const QByteArray data(xml, qsizetype(length));
    plist_to_xml_free(xml);
    QSaveFile file(plistPath);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(data);
    return file.commit();
}

bool RecordingList::replaceFile(const QString &plistPath) const
{
    std::remove(QFile::encodeName(plistPath).constData());
    return writeAtomically(plistPath);
}

bool addRecordToList(const QString &plistPath, const RecordingRecord &record)
{
    RecordingList list = RecordingList::read(plistPath);
    list.insertAtFront(record);
    if (!list.replaceFile(plistPath)) {
        capstan::NSLog(lcLibrary, "存储数据失败");
        return false;
    }
    return true;
}

void removeRecordingFromList(RecordingList &list, const QString &plistPath, const QString &path)
{
    list.removeRecordsWithPath(path);
    list.replaceFile(plistPath);
    std::remove(QFile::encodeName(path).constData());
}
