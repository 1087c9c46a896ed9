// SPDX-License-Identifier: GPL-3.0-or-later
#include "LetterCleaning.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <utility>

namespace lantern {
namespace {

// Columns that hang together.
struct Run {
    int left = 0;
    int right = 0;
};

std::vector<Run> RunsOf(const LineMask& mask)
{
    std::vector<Run> runs;
    for (int x = 0; x < mask.width; ++x) {
        bool isBlank = true;
        for (int y = 0; y < mask.height && isBlank; ++y)
            isBlank = mask.At(x, y) == 0;
        if (isBlank)
            continue;
        if (!runs.empty() && runs.back().right == x - 1)
            runs.back().right = x;
        else
            runs.push_back({x, x});
    }
    return runs;
}

// Typographic marks, as they are typed.
QString Plain(QString text)
{
    constexpr std::array<std::pair<char16_t, char16_t>, 9> kMarks = {{{u'\u2018', u'\''},
                                                                      {u'\u2019', u'\''},
                                                                      {u'\u201B', u'\''},
                                                                      {u'`', u'\''},
                                                                      {u'\u201C', u'"'},
                                                                      {u'\u201D', u'"'},
                                                                      {u'\u2013', u'-'},
                                                                      {u'\u2014', u'-'},
                                                                      {u'|', u'I'}}};
    for (const auto& [from, to] : kMarks)
        text.replace(QChar(from), QChar(to));
    return text;
}

void MendMarks(ReadLine& line)
{
    for (PlacedWord& word : line) {
        for (PlacedLetter& letter : word.letters)
            letter.text = Plain(letter.text);
        const QString text = word.Text();
        if (text == QStringLiteral("l") || text == QStringLiteral("1"))
            word.letters.front().text = QStringLiteral("I");
        for (const char* const begin : {"l'", "l,"}) {
            if (text.startsWith(QLatin1String(begin)))
                word.letters.front().text = QStringLiteral("I");
        }
    }
}

// A song in capitals has no small letters: what looks alike in both was taken for one.
void MendCapitals(std::vector<ReadLine>& read)
{
    int capitals = 0;
    int small = 0;
    const auto forEach = [&](auto act) {
        for (ReadLine& line : read) {
            for (PlacedWord& word : line) {
                for (PlacedLetter& letter : word.letters)
                    act(letter);
            }
        }
    };
    forEach([&](const PlacedLetter& letter) {
        capitals += letter.text.isUpper() ? 1 : 0;
        small += letter.text != letter.text.toUpper() ? 1 : 0;
    });
    if (capitals < 10 * small)
        return;
    forEach([](PlacedLetter& letter) {
        letter.text =
            letter.text == QStringLiteral("l") ? QStringLiteral("I") : letter.text.toUpper();
    });
}

// What stands in some columns, as a text that two equal pictures share.
std::string Shape(const LineMask& mask, const Run& run)
{
    std::string shape;
    for (int y = 0; y < mask.height; ++y) {
        std::string row;
        for (int x = run.left; x <= run.right; ++x)
            row += mask.At(x, y) ? '#' : '.';
        // The height of the line is no matter.
        if (!shape.empty() || row.find('#') != row.npos)
            shape += row + '/';
    }
    while (shape.ends_with("./")) {
        const std::size_t rowSize = static_cast<std::size_t>(run.right - run.left) + 2;
        if (shape.find('#', shape.size() - rowSize) != shape.npos)
            break;
        shape.resize(shape.size() - rowSize);
    }
    return shape;
}

// The runs whose middle lies in the letter.
std::vector<Run> RunsIn(const std::vector<Run>& runs, int left, int right)
{
    std::vector<Run> inside;
    for (const Run& run : runs) {
        const int middle = (run.left + run.right) / 2;
        if (middle >= left && middle <= right)
            inside.push_back(run);
    }
    return inside;
}

bool IsLetter(const PlacedWord& word, std::size_t i, char16_t letter)
{
    return i < word.letters.size() && word.letters[i].text == QString(QChar(letter));
}

// An m is one shape. Where two stand, or one that was read as r and n elsewhere, it is r and n.
class Ems {
public:
    Ems(const std::vector<SungLine>& lines, std::vector<ReadLine>& read)
        : m_lines(lines), m_read(read)
    {
    }

    void Mend()
    {
        ForEach([this](const LineMask& mask, const std::vector<Run>& runs, PlacedWord& word,
                       std::size_t i) {
            if (!IsLetter(word, i, u'r') || !IsLetter(word, i + 1, u'n'))
                return false;
            const auto inside = RunsIn(runs, word.letters[i].left, word.letters[i + 1].right);
            if (!inside.empty())
                m_pairs.insert(Shape(mask, {inside.front().left, inside.back().right}));
            return false;
        });
        ForEach([this](const LineMask& mask, const std::vector<Run>& runs, PlacedWord& word,
                       std::size_t i) {
            if (!IsLetter(word, i, u'm'))
                return false;
            const auto inside = RunsIn(runs, word.letters[i].left, word.letters[i].right);
            const bool isPair =
                !inside.empty() &&
                (LooksLikePair(inside) ||
                 m_pairs.contains(Shape(mask, {inside.front().left, inside.back().right})));
            return isPair;
        });
    }

private:
    // An r, and an n that is about as wide or wider, side by side.
    static bool LooksLikePair(const std::vector<Run>& runs)
    {
        if (runs.size() != 2)
            return false;
        const int first = runs[0].right - runs[0].left + 1;
        const int second = runs[1].right - runs[1].left + 1;
        return runs[1].left - runs[0].right <= 3 && first * 3 > second && second * 5 >= first * 4;
    }

    // Where act says so, an m becomes r and n.
    template <typename Act>
    void ForEach(Act act)
    {
        for (std::size_t at = 0; at < m_read.size(); ++at) {
            const std::vector<Run> runs = RunsOf(m_lines[at].mask);
            for (PlacedWord& word : m_read[at]) {
                for (std::size_t i = 0; i < word.letters.size(); ++i) {
                    if (!act(m_lines[at].mask, runs, word, i))
                        continue;
                    PlacedLetter& letter = word.letters[i];
                    const int middle = (letter.left + letter.right) / 2;
                    PlacedLetter second{QStringLiteral("n"), middle + 1, letter.right};
                    letter = {QStringLiteral("r"), letter.left, middle};
                    word.letters.insert(word.letters.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                                        std::move(second));
                }
            }
        }
    }

    const std::vector<SungLine>& m_lines;
    std::vector<ReadLine>& m_read;
    std::set<std::string> m_pairs; // shapes that were read as r and n
};

} // namespace

void CleanLetters(const std::vector<SungLine>& lines, std::vector<ReadLine>& read)
{
    for (ReadLine& line : read)
        MendMarks(line);
    MendCapitals(read);
    Ems(lines, read).Mend();
}

} // namespace lantern
