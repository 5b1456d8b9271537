#include "framework/base/Time.h"
#include "fuzz/support/Target.h"
#include "tags/TagValue.h"
#include "tags/detail/ParameterChain.h"

#include <vector>

using vak::fuzz::Require;

namespace {

/// The position of the `count`-th `unit`, from the left or from the right; -1 for none.
int Nth(const CString& text, wchar_t unit, int count, bool fromRight)
{
    const int length = text.GetLength();
    for (int i = 0; i < length; ++i) {
        const int at = fromRight ? length - 1 - i : i;
        if (text[at] == unit && --count == 0)
            return at;
    }
    return -1;
}

/// The names of a chain by its definition, every level counted from the ends anew.
std::vector<CString> NamesByDefinition(const CString& chain)
{
    std::vector<CString> names;
    for (int level = 1;; ++level) {
        const int open = Nth(chain, L'(', level, false);
        const int close = Nth(chain, L')', level, true);
        if (open < 0 || close < 0)
            return names;
        const CString content = chain.Mid(open + 1, close - open - 1);
        const int inner = content.Find(L'(');
        names.push_back(inner < 0 ? content : content.Left(inner));
    }
}

void RequireNames(const CString& text)
{
    const std::vector<CString> expected = NamesByDefinition(text);
    vak::detail::ParameterChain chain(text);
    CString name;
    std::size_t count = 0;
    for (; chain.Next(name); ++count)
        Require(count < expected.size() && name == expected[count]);
    Require(count == expected.size());
}

/// The first byte chooses the value and what it is to become. Then bytes: the chain, a zero, the path.
void Run(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    CString chain;
    CString path;
    CString* part = &chain;
    for (std::size_t i = 1; i < size; ++i) {
        if (data[i] == 0 && part == &chain)
            part = &path;
        else
            part->AppendChar(data[i]);
    }
    if (chain.GetLength() <= 256)
        RequireNames(chain);

    CTagValue value;
    value.SetDate(CTime(2003, 9, 1, 10, 0, 0));
    if ((data[0] & 1) != 0)
        value.SetFilename(path);
    const _TAGDATA_INFO wanted = (data[0] & 2) != 0 ? TAGDATA_TEXT : TAGDATA_NONE;
    const int result = value.HandleParametersAndConvertToType(wanted, chain);
    Require((result == 0) == (value.IsEmpty() != 0));
    Require(result == 0 || wanted == TAGDATA_NONE || value.GetDataType() == wanted);
}

const vak::fuzz::Target target("TagParameters", Run);

} // namespace
