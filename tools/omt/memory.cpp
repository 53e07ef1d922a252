// SPDX-License-Identifier: Apache-2.0
// Where memory runs out the program ends with a message and exit status 1, whoever asked for it.
// libxml2 would else go on with half of a model.
#include <libxml/xmlmemory.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

namespace
{

[[noreturn]] void end()
{
    constexpr std::string_view theMessage = "omt: not enough memory\n";
    [[maybe_unused]] const auto ignored =
        ::write(STDERR_FILENO, theMessage.data(), theMessage.size());
    std::_Exit(EXIT_FAILURE);
}

void* whole(void* memory)
{
    if (!memory) end();
    return memory;
}

/// Set up before all other static objects, as those take memory, too.
[[gnu::constructor(101)]] void watchMemory()
{
    std::set_new_handler(end);
    xmlMemSetup(
        std::free, [](std::size_t size) { return whole(std::malloc(size)); },
        [](void* old, std::size_t size) { return whole(std::realloc(old, size)); },
        [](const char* text) { return static_cast<char*>(whole(::strdup(text))); });
}

}  // namespace
