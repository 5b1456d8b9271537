#include "examples/vakconvert/TemplateFile.h"

#include "examples/sdk/FileBytes.h"
#include "examples/sdk/Utf8.h"
#include "files/FilePath.h"
#include "framework/base/ReplacementFile.h"

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

CString FromUtf16(std::string_view bytes)
{
    CString text;
    const int length = static_cast<int>(bytes.size() / 2);
    wchar_t* const units = text.GetBuffer(length);
    for (int i = 0; i < length; ++i) {
        const auto low = static_cast<unsigned char>(bytes[static_cast<std::size_t>(2 * i)]);
        const auto high = static_cast<unsigned char>(bytes[static_cast<std::size_t>(2 * i) + 1]);
        units[i] = static_cast<wchar_t>(high << 8 | low);
    }
    text.ReleaseBuffer(length);
    return text;
}

std::string ToUtf16(const CString& text)
{
    std::string bytes(kUtf16Mark);
    for (int i = 0; i < text.GetLength(); ++i) {
        bytes += static_cast<char>(text[i] & 0xFF);
        bytes += static_cast<char>(text[i] >> 8 & 0xFF);
    }
    return bytes;
}

CString FromAnsi(const std::string& bytes)
{
    CString text;
    const int room = static_cast<int>(bytes.size()) + 1;
    const int length =
        CStdioFileEx::GetUnicodeStringFromMultiByteString(bytes.c_str(), text.GetBuffer(room), room);
    text.ReleaseBuffer(length);
    return text;
}

std::string ToAnsi(const CString& text)
{
    const int room = CStdioFileEx::GetRequiredMultiByteLengthForUnicodeString(text);
    std::string bytes(static_cast<std::size_t>(room > 0 ? room : 1), '\0');
    bytes.resize(static_cast<std::size_t>(CStdioFileEx::GetMultiByteStringFromUnicodeString(
        text, bytes.data(), static_cast<int>(bytes.size()))));
    return bytes;
}

void Decode(const std::string& bytes, TemplateFile& file)
{
    if (bytes.starts_with(kUtf16Mark)) {
        file.encoding = TemplateFile::Encoding::Utf16;
        file.text = FromUtf16(std::string_view(bytes).substr(kUtf16Mark.size()));
        return;
    }
    if (bytes.starts_with(kUtf8Mark)) {
        file.encoding = TemplateFile::Encoding::Utf8WithMark;
        file.text = FromUtf8(std::string_view(bytes).substr(kUtf8Mark.size()));
        return;
    }
    file.encoding = TemplateFile::Encoding::Utf8;
    file.text = FromUtf8(bytes);
    if (ToUtf8(file.text) == bytes)
        return;
    file.encoding = TemplateFile::Encoding::Ansi;
    file.text = FromAnsi(bytes);
}

} // namespace

CString NewTemplate(const CString& path, TemplateFile& file)
{
    CString extension = fileGetExtension(path);
    extension.MakeLower();
    file.path = path;
    file.isRich = extension == L".rtf";
    file.document = "{\\rtf1}";
    return file.isRich || extension == L".txt" ? CString() : path + L": a template is a .txt or an .rtf file";
}

CString ReadTemplate(const CString& path, TemplateFile& file)
{
    CString problem = NewTemplate(path, file);
    if (!problem.IsEmpty())
        return problem;
    std::string bytes;
    if (ReadFileBytes(path, bytes) != IO_FILE_SUCCESS)
        return path + L" cannot be read";
    if (file.isRich) {
        file.document = std::move(bytes);
        return file.document.starts_with("{\\rtf") ? CString() : path + L" is no rich text";
    }
    Decode(bytes, file);
    const bool isWide = file.encoding == TemplateFile::Encoding::Utf16;
    if (!isWide && bytes.find('\0') != std::string::npos)
        return path + L" is no text";
    const int lineFeed = file.text.Find(L'\n');
    file.lineBreak = lineFeed >= 0 && file.text.Mid(lineFeed - 1, 1) != L"\r" ? L"\n" : L"\r\n";
    return {};
}

std::string EncodeText(const CString& text, TemplateFile::Encoding encoding)
{
    switch (encoding) {
    case TemplateFile::Encoding::Utf16:
        return ToUtf16(text);
    case TemplateFile::Encoding::Utf8WithMark:
        return std::string(kUtf8Mark) + ToUtf8(text);
    case TemplateFile::Encoding::Ansi:
        return ToAnsi(text);
    case TemplateFile::Encoding::Utf8:
        break;
    }
    return ToUtf8(text);
}

CString WriteWholeFile(const CString& path, std::string_view bytes)
{
    try {
        vak::detail::ReplacementFile file(path);
        file.File().Write(bytes.data(), static_cast<UINT>(bytes.size()));
        file.Commit();
        return {};
    } catch (CFileException* failure) {
        CString why;
        failure->GetErrorMessage(why.GetBuffer(512), 512);
        why.ReleaseBuffer();
        failure->Delete();
        return path + L" cannot be written: " + why;
    }
}
