// SPDX-License-Identifier: Apache-2.0
#include "omtReader/omtReadException.h"

DtOMTReadException::DtOMTReadException(const char* message) : DtException(message) {}
DtOMTReadException::DtOMTReadException(const DtOMTReadException& other) = default;
DtOMTReadException& DtOMTReadException::operator=(const DtOMTReadException& other) = default;
DtOMTReadException::~DtOMTReadException() = default;
