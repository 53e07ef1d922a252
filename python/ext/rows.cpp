// SPDX-License-Identifier: Apache-2.0
#include "rows.h"

#include "omt/recording/octetText.h"

#include <nanobind/stl/string.h>

#include <algorithm>
#include <charconv>

namespace nb = nanobind;

namespace omtpy
{

namespace
{

using Kind = RowColumn::Kind;

Kind kindOf(std::string_view name)
{
    return name == "time"                      ? Kind::number
           : name == "event"                   ? Kind::integer
           : name == "octets" || name == "tag" ? Kind::octets
                                               : Kind::text;
}

std::string_view textOf(const nb::bytes& bytes)
{
    return {bytes.c_str(), bytes.size()};
}

/// Appends the octets of a number; false where the text is none.
template <typename Number>
bool addNumber(std::string_view text, std::string& data)
{
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool isNumber = result.ec == std::errc() && result.ptr == end;
    if (!isNumber) number = 0;
    data.append(reinterpret_cast<const char*>(&number), sizeof number);
    return isNumber;
}

template <typename Elements>
nb::bytes bytesOf(const Elements& elements)
{
    return nb::bytes(elements.data(), elements.size() * sizeof *elements.data());
}

}  // namespace

void RowColumn::add(bool isThere)
{
    if (rows % 8 == 0) valid += '\0';
    if (isThere) valid.back() = static_cast<char>(valid.back() | 1 << rows % 8);
    offsets.push_back(static_cast<std::int64_t>(data.size()));
    ++rows;
}

void RowColumn::clear()
{
    data.clear();
    offsets.assign(1, 0);
    valid.clear();
    rows = 0;
}

Rows::Rows(nb::bytes start) : myReader(true)
{
    std::string_view text = textOf(start);
    if (const auto why = myReader.begin(text)) throw nb::value_error(why->c_str());
    for (const std::string& name : myReader.columns())
    {
        if (name == "problem")
            throw nb::value_error("the column \"problem\" has the name of a result");
        myColumns.push_back({name, kindOf(name), {}, {0}, {}, 0});
    }
    const auto isClass = [](const RowColumn& one) { return one.name == "class"; };
    myHasClass = std::any_of(myColumns.begin(), myColumns.end(), isClass);
    if (!myHasClass) myColumns.push_back({"class", Kind::text, {}, {0}, {}, 0});
    myColumns.push_back({"problem", Kind::text, {}, {0}, {}, 0});
}

void Rows::addProblem(std::string_view problem)
{
    if (!myProblem.empty()) myProblem += "; ";
    myProblem += problem;
}

void Rows::addCell(RowColumn& column, std::string_view cell)
{
    // What JSON lines have for nothing.
    const bool isThere = !cell.empty() && (column.kind == Kind::text || cell != "null");
    if (column.kind == Kind::text)
    {
        column.data += cell;
        return column.add(cell.data() != nullptr);
    }
    if (column.kind == Kind::octets)
    {
        std::string why;
        const bool isGood = omt::readOctets(isThere ? cell : std::string_view(), myOctets, why);
        if (!isGood) addProblem(why);
        if (isGood)
            column.data.append(reinterpret_cast<const char*>(myOctets.data()), myOctets.size());
        // A value may have no octets; what was discovered or removed has no value.
        const bool mayBeEmpty = column.name == "octets" && !myRow.member.empty();
        return column.add(isGood && (isThere || mayBeEmpty));
    }
    const bool isNumber = column.kind == Kind::number ? addNumber<double>(cell, column.data)
                                                      : addNumber<std::int64_t>(cell, column.data);
    if (isThere && !isNumber) addProblem(column.name + ": \"" + std::string(cell) + "\" is none");
    column.add(isThere && isNumber);
}

/// Where there is no column for it, the class stands before the last period.
void Rows::splitMember(std::string_view& className, std::string_view& member) const
{
    const std::size_t period = member.rfind('.');
    if (myHasClass || period == member.npos) return;
    className = member.substr(0, period);
    member = member.substr(period + 1);
}

void Rows::addRow(std::string_view line)
{
    myReader.read(line, myRow);
    myProblem = myRow.problem;
    if (myRow.isLine) addProblem(line);
    std::string_view className = myRow.className;
    std::string_view member = myRow.member;
    splitMember(className, member);
    for (std::size_t i = 0; i + 1 < myColumns.size(); ++i)
    {
        RowColumn& column = myColumns[i];
        if (myRow.isLine)
            addCell(column, {});
        else if (column.name == "member")
            addCell(column, member);
        else if (!myHasClass && i + 2 == myColumns.size())
            addCell(column, className);
        else
            addCell(column, myRow.cells[i]);
    }
    RowColumn& problem = myColumns.back();
    problem.data += myProblem;
    problem.add(!myProblem.empty());
}

nb::list Rows::read(nb::bytes block, bool isFirst)
{
    std::string_view text = textOf(block);
    for (RowColumn& column : myColumns) column.clear();
    {
        const nb::gil_scoped_release unlocked;
        if (isFirst)
        {
            omt::RowReader again(true);
            static_cast<void>(again.begin(text));
        }
        while (!text.empty())
        {
            const std::size_t end = std::min(text.find('\n'), text.size());
            std::string_view line = text.substr(0, end);
            text.remove_prefix(std::min(end + 1, text.size()));
            if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
            if (!line.empty()) addRow(line);
        }
    }
    nb::list columns;
    for (const RowColumn& one : myColumns)
    {
        const char kind[] = {static_cast<char>(one.kind), '\0'};
        columns.append(nb::make_tuple(one.name, kind, one.rows, bytesOf(one.valid),
                                      bytesOf(one.offsets), bytesOf(one.data)));
    }
    return columns;
}

}  // namespace omtpy
