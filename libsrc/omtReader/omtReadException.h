// SPDX-License-Identifier: Apache-2.0
// What the reader of HLA 1.3 models throws.
#pragma once

#include "util/dtException.h"

/// Why an HLA 1.3 model was not read: what is wrong, and in which entry.
class OMTREADER_EXPORT DtOMTReadException : public DtException
{
public:
    explicit DtOMTReadException(const char* message);
    DtOMTReadException(const DtOMTReadException& other);
    DtOMTReadException& operator=(const DtOMTReadException& other);
    ~DtOMTReadException() override;
};
