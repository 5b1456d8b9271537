#include "bench/peers/WideLines.h"

#include <cstdio>
#include <cwchar>

static_assert(sizeof(wchar_t) == 4, "the C library's own wide characters");

std::size_t CountWideLines(const char* path)
{
    std::FILE* file = std::fopen(path, "r,ccs=UTF-16LE");
    if (file == nullptr)
        return 0;
    std::size_t characters = 0;
    wchar_t line[4096];
    while (std::fgetws(line, 4096, file) != nullptr) {
        std::size_t length = std::wcslen(line);
        while (length > 0 && (line[length - 1] == L'\n' || line[length - 1] == L'\r'))
            --length;
        // The mark is a character to this reader.
        characters += length - (length > 0 && line[0] == 0xFEFF ? 1 : 0);
    }
    std::fclose(file);
    return characters;
}
