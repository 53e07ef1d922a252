// SPDX-License-Identifier: Apache-2.0
#include "util/dtException.h"

DtException::DtException(const DtString& message, const DtString& location)
    : myMessage(message),
      myLocation(location),
      myText(location.empty() ? message : location + ": " + message)
{
}

DtException::DtException(const DtException& other) = default;
DtException& DtException::operator=(const DtException& other) = default;
DtException::~DtException() = default;
