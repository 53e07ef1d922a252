// SPDX-License-Identifier: Apache-2.0
// The base of every exception that this library throws.
#pragma once

#include "util/dtString.h"

#include <exception>

/// A failure with its message and, where one is known, the place it concerns.
class OMTREADER_EXPORT DtException : public std::exception
{
public:
    /// The location is free text such as "file:line"; none by default.
    explicit DtException(const DtString& message, const DtString& location = DtString());
    DtException(const DtException& other);
    DtException& operator=(const DtException& other);
    ~DtException() override;

    const DtString& message() const { return myMessage; }
    const DtString& location() const { return myLocation; }

    /// The message, after "location: " where there is a location.
    const char* what() const noexcept override { return myText.c_str(); }

private:
    DtString myMessage;
    DtString myLocation;
    DtString myText;
};
