#include "examples/vakconvert/ContentIo.h"

#include "examples/sdk/ImageParser.h"
#include "examples/sdk/MeshParser.h"
#include "examples/sdk/Utf8.h"
#include "examples/vakconvert/Failure.h"
#include "files/FileIo.h"
#include "files/IoPlugins.h"

#include <exception>
#include <new>

namespace {

template <typename Parser, typename Data>
IO_FILE_RESULT Work(CFileIo& io, Data& data)
{
    auto& parser = static_cast<Parser&>(*io.GetCurrentParser());
    try {
        return io.IsLoading() ? parser.Load(data) : parser.Save(data);
    } catch (const std::bad_alloc&) {
        return IO_FILE_NO_MEMORY;
    }
}

} // namespace

CString RunParser(CFileIo& io, Content& content)
{
    if (io.InitParser() == nullptr)
        return io.GetIoErrorTxt();
    try {
        const IO_FILE_RESULT result =
            content.isMesh ? Work<CMeshParser>(io, content.mesh) : Work<CImageParser>(io, content.image);
        io.SetIoError(result);
        return result == IO_FILE_SUCCESS ? CString() : io.GetIoErrorTxt();
    } catch (CException* failure) {
        return TakeText(failure, L"the plug-in failed");
    } catch (const std::exception& failure) {
        return L"the plug-in failed: " + FromUtf8(failure.what());
    } catch (...) {
        return L"the plug-in failed";
    }
}

CString LoadContent(const CString& path, Content& content)
{
    CFileIo input(CFileNameSpec(path, 0), FILE_PARSER_LOADING | FILE_PARSER_SILENT, nullptr);
    content.isMesh = (input.GetKindOf() & kIoPlugin3D) != 0;
    return RunParser(input, content);
}
