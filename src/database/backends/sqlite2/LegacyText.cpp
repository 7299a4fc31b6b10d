#include "database/backends/sqlite2/LegacyText.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace DataAccess::Database::Sqlite2 {

namespace {

/// What Windows-1252 has at 0x80 to 0x9f; elsewhere, and at the five bytes that it leaves free, it equals Latin-1.
constexpr std::array<ushort, 32> windowsCharacters = {0x20ac, 0x0081, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021,
                                                      0x02c6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008d, 0x017d, 0x008f,
                                                      0x0090, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022, 0x2013, 0x2014,
                                                      0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x009d, 0x017e, 0x0178};

/// Length of the character that begins at @p at; 0 when it is no UTF-8.
int characterLength(const uchar* at, const uchar* end)
{
    struct Form
    {
        uchar mask, mark;
        uint first;
    };
    // By length: the lead byte's fixed bits, and the first code point that needs so many bytes.
    constexpr std::array<Form, 4> forms = {Form{0x80, 0x00, 0}, Form{0xe0, 0xc0, 0x80}, Form{0xf0, 0xe0, 0x800},
                                           Form{0xf8, 0xf0, 0x10000}};
    const auto form =
        std::find_if(forms.begin(), forms.end(), [at](const Form& f) { return (*at & f.mask) == f.mark; });
    const auto length = static_cast<int>(form - forms.begin()) + 1;
    if (form == forms.end() || end - at < length)
        return 0;
    uint code = *at & ~uint(form->mask) & 0xff;
    for (int i = 1; i < length; ++i) {
        if ((at[i] & 0xc0) != 0x80)
            return 0;
        code = code << 6 | (at[i] & 0x3f);
    }
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    return code < form->first || code > 0x10ffff || surrogate ? 0 : length;
}

bool isUtf8(const QByteArray& bytes)
{
    const auto* at = reinterpret_cast<const uchar*>(bytes.constData());
    const uchar* const end = at + bytes.size();
    while (at < end) {
        const int length = *at < 0x80 ? 1 : characterLength(at, end);
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

ushort fromWindows(uchar c)
{
    return c >= 0x80 && c < 0xa0 ? windowsCharacters[c - 0x80] : c;
}

int utf8Length(ushort character)
{
    return character < 0x80 ? 1 : character < 0x800 ? 2 : 3;
}

void appendUtf8(QByteArray& text, ushort character)
{
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    if (character < 0x800) {
        text += static_cast<char>(0xc0 | character >> 6);
    } else {
        text += static_cast<char>(0xe0 | character >> 12);
        text += static_cast<char>(0x80 | (character >> 6 & 0x3f));
    }
    text += static_cast<char>(0x80 | (character & 0x3f));
}

char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

QByteArray LegacyText::toUtf8(const QByteArray& bytes)
{
    if (isUtf8(bytes))
        return bytes;
    // Without the detour over UTF-16, which for a large text takes several times its size.
    const int size = std::accumulate(bytes.begin(), bytes.end(), 0, [](int sum, char c) {
        return sum + utf8Length(fromWindows(static_cast<uchar>(c)));
    });
    QByteArray text;
    text.reserve(size);
    for (const char c : bytes)
        appendUtf8(text, fromWindows(static_cast<uchar>(c)));
    return text;
}

bool LegacyText::sameWord(const QByteArray& left, const QByteArray& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return asciiLower(a) == asciiLower(b); });
}

} // namespace DataAccess::Database::Sqlite2
