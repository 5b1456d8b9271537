// Row "text files": lines of a file to wide strings, beside what a program would use instead.

#include "bench/peers/WideLines.h"
#include "files/StdioFileEx.h"
#include "framework/base/SystemText.h"

#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

enum class Form
{
    Latin1,
    Utf8,
    Utf16
};

/// The files of the row, written when first asked for and removed at the end of the program.
class Files
{
public:
    struct File
    {
        std::string host;
        CString path;
        std::size_t bytes = 0;
        std::size_t characters = 0; ///< without line ends
    };

    ~Files()
    {
        std::error_code ignored;
        for (const auto& [key, file] : m_files)
            std::filesystem::remove(file.host, ignored);
    }

    const File& Get(Form form, int megabytes)
    {
        File& file = m_files[{form, megabytes}];
        if (file.host.empty())
            Write(form, static_cast<std::size_t>(megabytes) * 1000000, file);
        return file;
    }

private:
    /// Lines of 20 to 100 characters, every tenth letter accented.
    static void Write(Form form, std::size_t size, File& file)
    {
        const auto folder = std::filesystem::temp_directory_path();
        file.host = folder / ("vakbench-" + std::to_string(std::random_device()()) + ".txt");
        CString path(file.host.c_str());
        path.Replace(L'/', L'\\');
        file.path = L"Z:" + path;
        CStdioFileEx out(file.path, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary |
                                        (form == Form::Utf16 ? CStdioFileEx::kWriteUtf16 : 0));
        out.SetCodePage(form == Form::Utf8 ? 65001 : 1252);
        std::mt19937 random(1);
        while (out.GetPosition() < size) {
            CString text;
            for (int lines = 0; lines < 1000; ++lines) {
                const unsigned int length = 20 + random() % 81;
                for (unsigned int i = 0; i < length; ++i)
                    text += random() % 10 == 0 ? L'é' : static_cast<wchar_t>(L'a' + random() % 26);
                text += L"\r\n";
                file.characters += length;
            }
            out.WriteString(text);
        }
        out.Close();
        file.bytes = std::filesystem::file_size(file.host);
    }

    std::map<std::pair<Form, int>, File> m_files;
};

Files files;

using Reader = std::size_t (*)(const Files::File&);

template <UINT codePage>
std::size_t ReadVak(const Files::File& file)
{
    CStdioFileEx in(file.path, CFile::modeRead | CFile::typeText);
    in.SetCodePage(codePage);
    std::size_t characters = 0;
    CString line;
    while (in.ReadString(line))
        characters += static_cast<std::size_t>(line.GetLength());
    return characters;
}

void StripCarriageReturn(std::string& line)
{
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
}

std::size_t ReadGetlineWiden(const Files::File& file)
{
    std::ifstream in(file.host, std::ios::binary);
    std::size_t characters = 0;
    std::u16string wide;
    for (std::string line; std::getline(in, line);) {
        StripCarriageReturn(line);
        wide.resize(line.size());
        for (std::size_t i = 0; i < line.size(); ++i)
            wide[i] = static_cast<unsigned char>(line[i]);
        benchmark::DoNotOptimize(wide.data());
        characters += wide.size();
    }
    return characters;
}

std::size_t ReadIcu(const Files::File& file)
{
    std::ifstream in(file.host, std::ios::binary);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = ucnv_open("UTF-8", &status);
    std::size_t characters = 0;
    std::u16string wide;
    for (std::string line; std::getline(in, line);) {
        StripCarriageReturn(line);
        wide.resize(line.size());
        const int length = ucnv_toUChars(converter, wide.data(), static_cast<int>(wide.size()), line.data(),
                                         static_cast<int>(line.size()), &status);
        // No zero behind the text is a warning, which a new call does not take as it is.
        status = U_FAILURE(status) ? status : U_ZERO_ERROR;
        benchmark::DoNotOptimize(wide.data());
        characters += static_cast<std::size_t>(length);
    }
    ucnv_close(converter);
    return U_FAILURE(status) ? 0 : characters;
}

std::size_t ReadFgetws(const Files::File& file)
{
    return CountWideLines(file.host.c_str());
}

void Run(benchmark::State& state, Form form, int megabytes, Reader read)
{
    const Files::File& file = files.Get(form, megabytes);
    for (auto _ : state) {
        if (read(file) != file.characters) {
            state.SkipWithError("other characters than were written");
            return;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * file.bytes));
}

const int registered = [] {
    const struct
    {
        const char* name;
        Form form;
        const char* peerName;
        Reader vak;
        Reader peer;
    } rows[] = {
        {"latin1", Form::Latin1, "getline+widen", ReadVak<1252>, ReadGetlineWiden},
        {"utf8", Form::Utf8, "icu", ReadVak<65001>, ReadIcu},
        {"utf16", Form::Utf16, "fgetws", ReadVak<1252>, ReadFgetws},
    };
    for (const int megabytes : {2, 200}) {
        for (const auto& row : rows) {
            const std::string prefix =
                "text_files/" + std::string(row.name) + "/" + std::to_string(megabytes) + "MB/";
            for (const bool isVak : {true, false}) {
                const Reader read = isVak ? row.vak : row.peer;
                benchmark::RegisterBenchmark(
                    (prefix + (isVak ? "vak" : row.peerName)).c_str(),
                    [=](benchmark::State& state) { Run(state, row.form, megabytes, read); })
                    ->Unit(benchmark::kMillisecond);
            }
        }
    }
    return 0;
}();

} // namespace
