// SPDX-License-Identifier: GPL-3.0-or-later
#include "TesseractReader.h"

#include <tesseract/capi.h>

#include <QStringList>

#include <algorithm>
#include <dlfcn.h>
#include <utility>

namespace lantern {
namespace {

constexpr char kLibrary[] = "libtesseract.so.5";

// What is called of the library.
#define LANTERN_CALLS                                                                              \
    LANTERN_CALL(BaseAPICreate)                                                                    \
    LANTERN_CALL(BaseAPIDelete)                                                                    \
    LANTERN_CALL(BaseAPIInit2)                                                                     \
    LANTERN_CALL(BaseAPIGetLoadedLanguagesAsVector)                                                \
    LANTERN_CALL(BaseAPISetVariable)                                                               \
    LANTERN_CALL(BaseAPISetPageSegMode)                                                            \
    LANTERN_CALL(BaseAPISetImage)                                                                  \
    LANTERN_CALL(BaseAPISetSourceResolution)                                                       \
    LANTERN_CALL(BaseAPIRecognize)                                                                 \
    LANTERN_CALL(BaseAPIGetIterator)                                                               \
    LANTERN_CALL(BaseAPIClear)                                                                     \
    LANTERN_CALL(ResultIteratorDelete)                                                             \
    LANTERN_CALL(ResultIteratorNext)                                                               \
    LANTERN_CALL(ResultIteratorGetUTF8Text)                                                        \
    LANTERN_CALL(ResultIteratorConfidence)                                                         \
    LANTERN_CALL(ResultIteratorGetPageIteratorConst)                                               \
    LANTERN_CALL(PageIteratorIsAtBeginningOf)                                                      \
    LANTERN_CALL(PageIteratorBoundingBox)                                                          \
    LANTERN_CALL(DeleteText)                                                                       \
    LANTERN_CALL(DeleteTextArray)

struct Calls {
#define LANTERN_CALL(name) decltype(&::Tess##name) name = nullptr;
    LANTERN_CALLS
#undef LANTERN_CALL
};

bool Resolve(void* library, Calls& calls)
{
    bool isWhole = true;
#define LANTERN_CALL(name)                                                                         \
    calls.name = reinterpret_cast<decltype(calls.name)>(dlsym(library, "Tess" #name));             \
    isWhole = isWhole && calls.name;
    LANTERN_CALLS
#undef LANTERN_CALL
    return isWhole;
}
#undef LANTERN_CALLS

// Of the library that runs its loops on several threads.
using SetParallelLevels = void (*)(int);
constexpr char kSetParallelLevels[] = "omp_set_max_active_levels";

class TesseractReader final : public LineReader {
public:
    // The second may be null.
    TesseractReader(const Calls& calls, SetParallelLevels setParallelLevels)
        : m_calls(calls), m_setParallelLevels(setParallelLevels), m_api(calls.BaseAPICreate())
    {
        // It would tell of what it misses on standard error.
        m_calls.BaseAPISetVariable(m_api, "debug_file", "/dev/null");
    }
    ~TesseractReader() override { m_calls.BaseAPIDelete(m_api); }
    TesseractReader(const TesseractReader&) = delete;
    TesseractReader& operator=(const TesseractReader&) = delete;

    // Tells which of the languages, joined by +, has no data; null if none is missing.
    QString Initialise(const QString& languages)
    {
        if (m_calls.BaseAPIInit2(m_api, nullptr, languages.toUtf8().constData(),
                                 tesseract::OEM_LSTM_ONLY) != 0)
            return languages;
        // With one of several it is content.
        const QStringList loaded = Loaded();
        for (const QString& language : languages.split(u'+')) {
            if (!loaded.contains(language))
                return language;
        }
        m_calls.BaseAPISetPageSegMode(m_api, tesseract::PSM_SINGLE_LINE);
        return {};
    }

    std::vector<ReadWord> Read(const GreyPicture& line) override
    {
        constexpr int kPointsPerInch = 150;
        // Its loops are short: to share them out among threads takes three times as long. That is
        // up to the thread that asks.
        if (m_setParallelLevels)
            m_setParallelLevels(0);
        m_calls.BaseAPISetImage(m_api, line.pixels.data(), line.width, line.height, 1, line.width);
        m_calls.BaseAPISetSourceResolution(m_api, kPointsPerInch);
        std::vector<ReadWord> words;
        if (m_calls.BaseAPIRecognize(m_api, nullptr) == 0) {
            if (TessResultIterator* const at = m_calls.BaseAPIGetIterator(m_api)) {
                Collect(at, words);
                m_calls.ResultIteratorDelete(at);
            }
        }
        m_calls.BaseAPIClear(m_api);
        return words;
    }

private:
    QStringList Loaded() const
    {
        QStringList names;
        char** const loaded = m_calls.BaseAPIGetLoadedLanguagesAsVector(m_api);
        for (char** name = loaded; name && *name; ++name)
            names += QString::fromUtf8(*name);
        if (loaded)
            m_calls.DeleteTextArray(loaded);
        return names;
    }
    void Collect(TessResultIterator* at, std::vector<ReadWord>& words)
    {
        const TessPageIterator* const page = m_calls.ResultIteratorGetPageIteratorConst(at);
        do {
            char* const text = m_calls.ResultIteratorGetUTF8Text(at, tesseract::RIL_SYMBOL);
            if (!text)
                continue;
            ReadLetter letter;
            letter.text = QString::fromUtf8(text).trimmed();
            m_calls.DeleteText(text);
            int top = 0;
            int bottom = 0;
            m_calls.PageIteratorBoundingBox(page, tesseract::RIL_SYMBOL, &letter.left, &top,
                                            &letter.right, &bottom);
            if (words.empty() || m_calls.PageIteratorIsAtBeginningOf(page, tesseract::RIL_WORD)) {
                const double percent = m_calls.ResultIteratorConfidence(at, tesseract::RIL_WORD);
                words.push_back({{}, std::clamp(percent / 100, 0.0, 1.0)});
            }
            if (!letter.text.isEmpty())
                words.back().letters.push_back(std::move(letter));
        } while (m_calls.ResultIteratorNext(at, tesseract::RIL_SYMBOL));
        std::erase_if(words, [](const ReadWord& word) { return word.letters.empty(); });
    }

    const Calls m_calls;
    const SetParallelLevels m_setParallelLevels;
    TessBaseAPI* const m_api;
};

// A name is put together to that of a file. Several are joined by +.
bool IsLanguage(const QString& language)
{
    return !language.split(u'+').contains(QString()) && language.size() <= 100 &&
           std::ranges::all_of(language, [](QChar letter) {
               const char16_t code = letter.unicode();
               return (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z') ||
                      (code >= u'0' && code <= u'9') || code == u'_' || code == u'+';
           });
}

} // namespace

ReaderOffer LoadTesseractReader(const QString& language)
{
    if (!IsLanguage(language))
        return {nullptr, QStringLiteral("Not the name of a language: '%1'").arg(language)};
    void* const library = dlopen(kLibrary, RTLD_LAZY | RTLD_LOCAL);
    Calls calls;
    if (!library || !Resolve(library, calls)) {
        return {nullptr, QStringLiteral("Reading words needs Tesseract 5 (on Debian the package "
                                        "tesseract-ocr-eng), and %1 is not here")
                             .arg(QLatin1String(kLibrary))};
    }
    const auto setParallelLevels =
        reinterpret_cast<SetParallelLevels>(dlsym(library, kSetParallelLevels));
    auto reader = std::make_unique<TesseractReader>(calls, setParallelLevels);
    const QString missing = reader->Initialise(language);
    if (missing.isNull())
        return {std::move(reader), {}};
    return {nullptr, QStringLiteral("Tesseract has no data for '%1'; on Debian they come with a "
                                    "package such as tesseract-ocr-eng")
                         .arg(missing)};
}

} // namespace lantern
