#include "examples/sdk/FileBytes.h"
#include "examples/sdk/ImageParser.h"
#include "examples/sdk/OptionsSheet.h"
#include "examples/sdk/PluginExport.h"

#include "examples/plugins/image/Codec.h"

#include "files/FileExt.h"
#include "files/FileIo.h"
#include "files/IoPlugins.h"

/// The plug-in for pictures: PNG, JPEG, BMP and TGA.

namespace image {

namespace {

constexpr unsigned int kQualityOption = 'QUAL';
constexpr unsigned int kCompressOption = 'RLE ';

constexpr FormatOption kQuality{.name = L"quality",
                                .id = kQualityOption,
                                .kind = FormatOption::Kind::Integer,
                                .defaultValue = 90,
                                .minimum = 1,
                                .maximum = 100,
                                .description = L"1 smallest file, 100 best picture",
                                .label = L"&Qualité",
                                .tip = L"1 : le plus petit fichier, 100 : la meilleure image"};
constexpr FormatOption kCompress{.name = L"compress",
                                 .id = kCompressOption,
                                 .kind = FormatOption::Kind::Boolean,
                                 .defaultValue = 1,
                                 .minimum = 0,
                                 .maximum = 1,
                                 .description = L"run-length compression",
                                 .label = L"&Compression",
                                 .tip = L"les suites de pixels égaux prennent moins de place"};

struct Kind
{
    const wchar_t* description;
    const wchar_t* extensions;
    unsigned int fileClass;
    Format format;
    const FormatOption* option; ///< of the writer, or null
};

constexpr Kind kKinds[] = {
    {L"Portable network graphics", L".png", 'PNG ', Format::Png, nullptr},
    {L"JPEG files", L".jpg|.jpeg", 'JPEG', Format::Jpeg, &kQuality},
    {L"Bitmap files", L".bmp", 'BMP ', Format::Bmp, nullptr},
    {L"Targa files", L".tga", 'TGA ', Format::Tga, &kCompress},
};

class Parser : public CImageParser
{
public:
    Parser(CFileIo* io, const Kind& kind) : CImageParser(io), m_io(*io), m_kind(kind) {}

    IO_FILE_RESULT Load(Image& image) override
    {
        std::string bytes;
        image = Image();
        const IO_FILE_RESULT result = ReadFileBytes(m_io.GetCompleteName(), bytes);
        if (result != IO_FILE_SUCCESS)
            return result;
        return bytes.empty() ? IO_FILE_EMPTY : Decode(m_kind.format, bytes, image);
    }

    IO_FILE_RESULT Save(const Image& image) override
    {
        if (!image.IsConsistent())
            return IO_FILE_NOTHING_TO_SAVE;
        if (!AskForOptions(m_io, GetOptions()))
            return IO_FILE_ABORTED;
        int parameter = 0;
        if (m_kind.option != nullptr)
            parameter = static_cast<int>(GetFormatOption(m_io.GetCustomData(), *m_kind.option));
        std::string bytes;
        const IO_FILE_RESULT result = Encode(m_kind.format, image, parameter, bytes);
        return result == IO_FILE_SUCCESS ? WriteFileBytes(m_io.GetCompleteName(), bytes) : result;
    }

    FormatOptions GetOptions() const override
    {
        if (m_io.IsLoading() || m_kind.option == nullptr)
            return {};
        return {*m_kind.option};
    }

private:
    CFileIo& m_io;
    const Kind& m_kind;
};

} // namespace

} // namespace image

VAK_PLUGIN_EXPORT unsigned int GetLibraryVersion()
{
    return vak::kInterfaceVersion;
}

VAK_PLUGIN_EXPORT int InitBitmapParser(IoPluginMode mode, void* data)
{
    if (mode == IoPluginDeclare) {
        constexpr unsigned int kReadAndWrite = vak::kFileKindBitmap | vak::kFileRead | vak::kFileWrite;
        for (const image::Kind& kind : image::kKinds) {
            const unsigned int dialog = kind.option != nullptr ? vak::kFileWriteDialog : 0;
            static_cast<CFileExtArray*>(data)->Add(CFileExt(kind.description, kind.extensions, kind.fileClass,
                                                            kReadAndWrite | dialog, vak::kFileCodePlugin,
                                                            vak::kFileCodePlugin));
        }
        return 1;
    }
    auto& request = *static_cast<IoParserRequest*>(data);
    for (const image::Kind& kind : image::kKinds) {
        if (kind.fileClass == request.fileClass)
            request.parser = new image::Parser(request.fileIo, kind);
    }
    return request.parser != nullptr ? 1 : 0;
}
