// SPDX-License-Identifier: Apache-2.0
// A number as text.
#pragma once

#include "util/dtExport.h"
#include "util/dtString.h"

/// A text made of a number, whatever the locale: the one way in which representations write one.
///
/// A floating-point number has as many significant digits as the precision says, by the rules of
/// the C conversion "%g": 2/3 with precision 3 is "0.667", precision 0 counts as 1, and infinities
/// and NaNs are "inf", "-inf", "nan" and "-nan". A negative precision is a huge one. No text has
/// more than 63 characters; what is longer is cut off.
class OMTREADER_EXPORT DtConversionString : public DtString
{
public:
    DtConversionString(double number, int precision);
    DtConversionString(float number, int precision);
    explicit DtConversionString(unsigned char number);
    explicit DtConversionString(long number);
    explicit DtConversionString(unsigned long number);
    virtual ~DtConversionString();

    /// Replaces the text as the constructor would make it.
    void setString(double number, int precision);
    void setString(float number, int precision);
};
