#pragma once

namespace dataservice {

// Length of the UTF-8 sequence that starts at p (its lead byte is at least 0x80), storing its
// code point in *code; 0 when the bytes are not valid UTF-8 (truncated, overlong, a surrogate,
// or past U+10FFFF). Engines hand out text as bytes that need not be valid UTF-8.
inline int utf8SequenceLength(const unsigned char *p, const unsigned char *end, char32_t *code)
{
    const unsigned char c = *p;
    int length;
    if (c < 0xC2)
        return 0;
    if (c < 0xE0) {
        length = 2;
        *code = c & 0x1F;
    } else if (c < 0xF0) {
        length = 3;
        *code = c & 0x0F;
    } else if (c < 0xF5) {
        length = 4;
        *code = c & 0x07;
    } else {
        return 0;
    }
    if (end - p < length)
        return 0;
    for (int i = 1; i < length; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        *code = (*code << 6) | (p[i] & 0x3F);
    }
    const bool overlong = (length == 3 && *code < 0x800) || (length == 4 && *code < 0x10000);
    const bool surrogate = *code >= 0xD800 && *code <= 0xDFFF;
    return overlong || surrogate || *code > 0x10FFFF ? 0 : length;
}

} // namespace dataservice
