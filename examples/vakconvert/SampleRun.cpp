#include "examples/vakconvert/SampleRun.h"

#include "examples/sdk/FileBytes.h"
#include "files/FileNames.h"
#include "files/FileSystem.h"
#include "files/IoPlugins.h"

namespace {

constexpr std::size_t kLargest = 9432;

} // namespace

SampleRun::SampleRun()
{
    const CString folder = fileCreateTmpFolder(L"vakconvert sample", 1);
    const CString largest = folder + L"ring.ply";
    WriteFileBytes(largest, std::string(kLargest, ' '));
    m_facts.date = CTime(2026, 9, 1, 10, 0, 0);
    m_facts.seconds = 75;
    m_facts.destination = folder;
    m_facts.passedOver = 2;
    m_facts.outcomes = {
        {L"crate.obj", folder + L"crate.ply", L"8 vertices, 6 faces", 812, 0.4, {}, kIoPlugin3D, 8, 6},
        {L"parts\\ring.stl", largest, L"240 vertices, 480 faces", kLargest, 0.6, {}, kIoPlugin3D, 240, 480},
        {L"photo.tga", folder + L"photo.png", L"96 x 64 RGB", 5120, 0.2, {}, kIoPluginBitmaps, 0, 0},
        {L"parts\\torn.ply", {}, {}, 0, 0.1, L"the file is damaged", 0, 0, 0},
    };
}

SampleRun::~SampleRun()
{
    if (fileIsDirectory(m_facts.destination, 1))
        fileRemoveDirectory(m_facts.destination, 1);
}
