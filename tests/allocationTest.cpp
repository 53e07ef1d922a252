// SPDX-License-Identifier: Apache-2.0
// What conversions leave behind when memory runs out: every allocation of a call fails once.
#include "modelText.h"
#include "omtReader/datatypeManager.h"
#include "support.h"

#include <cstdlib>
#include <new>

namespace
{

/// The allocation of this thread that is to fail, counted down; negative for none.
thread_local long theFailure = -1;

void* allocate(std::size_t size)
{
    if (theFailure >= 0 && theFailure-- == 0) throw std::bad_alloc();
    void* const memory = std::malloc(size > 0 ? size : 1);
    if (!memory) throw std::bad_alloc();
    return memory;
}

}  // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}
void* operator new[](std::size_t size)
{
    return allocate(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace
{

/// Makes an object and lets one allocation of its work fail, then the same with the next one, until
/// none is left. Afterwards the object has to give what is expected, time and again.
void expectWorksAfterFailures(const auto& make, const auto& work)
{
    const auto expected = work(*make());
    long count = 0;
    for (bool hasFailed = true; hasFailed && count < 10000; ++count)
    {
        const auto object = make();
        theFailure = count;
        try
        {
            work(*object);
        }
        catch (const std::bad_alloc&)
        {
        }
        hasFailed = theFailure < 0;
        theFailure = -1;
        for (int times = 0; times < 3; ++times) ASSERT_EQ(work(*object), expected) << count;
    }
    EXPECT_GT(count, 3) << "nothing failed";
}

}  // namespace

TEST(AllocationTest, ManagersEncodeAfterAFailureAsBefore)
{
    const Messages messages;
    const TreePtr model = modelOf(
        "simple B byte;simple C char;enumerated E HLAoctet Five=5 Six=6;"
        "array Text C HLAnullTerminatedArray -;array V B HLAvariableArray Dynamic;"
        "fixed Datum a:E b:B c:V;array Data Datum HLAvariableArray Dynamic;"
        "fixed All a:Text b:Datum c:B d:Data;complex Old k:E:1 a:B:(k_=_5) o:Datum:0-2 z:B:0-1");
    const auto make = [&]
    {
        auto manager = std::make_unique<DtDatatypeManager>();
        manager->fillDefaultDatatypeRepList();
        manager->initOMTData(model.get());
        manager->addDelimiterMap("Datum", ", ");
        manager->setNodeLimit(2);  // and one for each octet of the text: spent ones would show
        return manager;
    };
    const std::pair<const char*, const char*> theValues[] = {
        {"All",  "a[b[]] Five, 1, 2[3], 7 Six, 3, 4[Five, 5, 6]"},
        {"Old",  "Five 7 Six, 1, 2[Five, 3, 4], 9"              },
        {"Data", "Five 1 2[Six, 3, 4[5]]"                       },
        {"E",    "Six"                                          },
    };
    for (const auto& [datatype, text] : theValues)
    {
        SCOPED_TRACE(datatype);
        expectWorksAfterFailures(make,
                                 [&, name = datatype, line = text](DtDatatypeManager& manager)
                                 {
                                     DtDatatypeManager::Octets out;
                                     manager.getValueFromStringRep(name, line, out);
                                     return out;
                                 });
    }
    EXPECT_EQ(messages.list(), std::vector<std::string>());
}
