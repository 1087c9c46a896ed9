// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LineReader.h"

#include <QString>

#include <memory>

namespace lantern {

struct ReaderOffer {
    std::unique_ptr<LineReader> reader; // none if there is an error
    QString error;                      // a sentence in one line
};

// The system's Tesseract, which is loaded only here, with its data for a language by its name
// there, such as eng, or several with + between them. It works on the calling thread alone.
ReaderOffer LoadTesseractReader(const QString& language);

} // namespace lantern
