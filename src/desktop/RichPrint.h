#pragma once
// Puts a document on paper: the pages of a printer or of a PDF file. A line is never cut in two.

#include <QPagedPaintDevice>

#include "platform/rich/RichDocument.h"

namespace talvora {

// `title` stands above the text, on the first page. False if the device takes nothing.
bool printDocument(const RichDocument& document, const QString& title, QPagedPaintDevice& device);

}  // namespace talvora
