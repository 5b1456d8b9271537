#include "files/ExtensionList.h"

namespace {

/// What of a list counts, in UTF-16 units: the platform's longest path without its end.
constexpr int kListLimit = 259;

/// Takes the next blank-separated piece off the list; empty at its end.
CString NextPiece(const CString& list, int& position)
{
    while (position < list.GetLength() && list[position] == L' ')
        ++position;
    const int start = position;
    const int blank = list.Find(L' ', start);
    position = blank < 0 ? list.GetLength() : blank;
    return list.Mid(start, position - start);
}

/// A quotation goes on beyond blanks, up to its closing quote or, without one, to the list's end.
CString CompleteQuotation(CString piece, const CString& list, int& position)
{
    if (piece[0] != L'"' || piece.Find(L'"', 1) >= 0)
        return piece;
    const int quote = list.Find(L'"', position);
    const int end = quote < 0 ? list.GetLength() : quote + 1;
    piece += list.Mid(position, end - position);
    position = end;
    return piece;
}

CString AsExtension(const CString& piece)
{
    if (piece[0] == L'.')
        return L"*" + piece;
    return piece.Find(L'.') < 0 ? L"*." + piece : piece;
}

CString AsPattern(CString piece)
{
    const wchar_t last = piece[piece.GetLength() - 1];
    if (piece[0] == L'"' || last == L'"') {
        piece.Remove(L'"');
        return piece;
    }
    if (piece.Find(L'?') >= 0)
        return piece;
    if (last != L'*')
        piece += L'*';
    return piece[0] == L'*' ? piece : L"*" + piece;
}

CString Normalise(const CString& typed)
{
    CString list(typed.GetString()); // up to the first zero
    list.Replace(L',', L' ');
    list.Replace(L';', L' ');
    list.Trim(L' ');
    list.MakeLower();
    return list.Left(kListLimit);
}

} // namespace

CString fileCleanExtensionList(const CString& list, int extensionMode, CHashTable<CString>* table)
{
    CHashTable<CString> own;
    CHashTable<CString>& seen = table != nullptr ? *table : own;
    const CString pieces = Normalise(list);
    CString result;
    int position = 0;
    for (CString piece = NextPiece(pieces, position); !piece.IsEmpty(); piece = NextPiece(pieces, position)) {
        piece =
            extensionMode != 0 ? AsExtension(piece) : AsPattern(CompleteQuotation(piece, pieces, position));
        if (piece.IsEmpty() || !seen.Insert(piece))
            continue;
        if (!result.IsEmpty())
            result += L' ';
        result += piece;
    }
    return result;
}

unsigned int fileGetHashFromExtensionList(CString& list, CHashTable<CString>& table, int extensionMode)
{
    table.Free();
    list = fileCleanExtensionList(list, extensionMode, &table);
    return table.GetCount();
}
