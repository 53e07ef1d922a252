// SPDX-License-Identifier: Apache-2.0
#include "omtReader/values/asciiConversion.h"

#include "util/dtMessages.h"

#include <iconv.h>

#include <cerrno>

namespace
{

/// A converter of the C library, open as long as this object lives.
class Converter
{
public:
    Converter(const char* from, const char* to) : myHandle(iconv_open(to, from)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter()
    {
        if (isOpen()) iconv_close(myHandle);
    }

    bool isOpen() const { return myHandle && myHandle != reinterpret_cast<iconv_t>(-1); }

    /// Fills the output from its start. False if some of the input could not be converted; errno
    /// then says why.
    bool convert(std::string_view input, char* output, std::size_t size)
    {
        char* from = const_cast<char*>(input.data());  // only read
        std::size_t left = input.size();
        return iconv(myHandle, &from, &left, &output, &size) != static_cast<std::size_t>(-1);
    }

private:
    iconv_t myHandle;
};

const char* reasonOf(int error)
{
    switch (error)
    {
        case E2BIG:
            return "insufficient room in output buffer.\n";
        case EILSEQ:
            return "invalid multi-byte sequence in the input.\n";
        case EINVAL:
            return "incomplete multi-byte sequence in the input.\n";
        default:
            return "unknown error.\n";
    }
}

}  // namespace

std::string omtreader::readAscii(const char* charset, std::string_view octets)
{
    Converter converter(charset, "ASCII");
    if (!converter.isOpen()) return {};
    std::string text(octets.size(), '\0');
    if (!converter.convert(octets, text.data(), text.size()))
    {
        const char* const reason = reasonOf(errno);
        DtWarn << "Failed to convert from " << charset
               << " to ASCII when creating string representation: " << reason;
        return {};
    }
    text.resize(text.find('\0') == text.npos ? text.size() : text.find('\0'));
    return text;
}

std::vector<char> omtreader::writeAscii(const DtString& text, const char* charset,
                                        const char* beforeReason)
{
    Converter converter("ASCII", charset);
    if (!converter.isOpen()) return {};
    const std::string_view withZero(text.c_str(), text.length() + 1);
    std::vector<char> octets(2 * withZero.size(), 'a');
    if (!converter.convert(withZero, octets.data(), octets.size()))
    {
        const char* const reason = reasonOf(errno);
        DtWarn << "Failed to convert from ASCII to " << charset
               << " when creating value from string representation: " << beforeReason << reason;
    }
    return octets;
}
