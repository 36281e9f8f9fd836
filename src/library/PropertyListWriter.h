// Writes an XML property list, format 1.0 as published: header, document type, one tab for each level. Values go to the
// device as they come. The caller gives the keys of a dictionary in sorted order. Any thread; a device that fails makes
// finish() answer false. Characters that XML cannot hold are dropped.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <string_view>

class QIODevice;

namespace qm {

class PropertyListWriter {
public:
    explicit PropertyListWriter(QIODevice& device);

    static bool holds(const QString& text);  // nothing of it would be dropped

    void beginArray() { beginContainer("array"); }
    void endArray() { endContainer("array"); }
    void beginDict() { beginContainer("dict"); }
    void endDict() { endContainer("dict"); }
    void key(std::string_view name);  // ASCII without markup
    void string(const QString& value);
    void integer(std::int64_t value);

    // Closes the document and hands the rest to the device. False if anything could not be written.
    bool finish();

private:
    void beginContainer(std::string_view name);
    void endContainer(std::string_view name);
    void openLine();
    void append(std::string_view text);
    void appendEscaped(const QString& text);
    void flush();

    QIODevice& m_device;
    QByteArray m_buffer;
    int m_depth = 0;
    bool m_containerIsEmpty = false;  // the innermost container has no element yet, and its tag is still to be written
    bool m_failed = false;
};

}  // namespace qm
