// Reads uncompressed 8-bit RGBA TIFF pages, so that no image plug-in is needed for the one such resource. Any thread.
#pragma once

#include <QByteArray>
#include <QImage>

namespace qm {

// Page `page` (0 is the first) of a little-endian file; null when the page is absent, damaged or of another kind.
QImage tiffPage(const QByteArray& file, int page);

}  // namespace qm
