// SPDX-License-Identifier: Apache-2.0
#include "textTable.h"

#include "paint.h"
#include "plainText.h"

#include <algorithm>

namespace
{

constexpr std::size_t thePageWidth = 100;
constexpr std::size_t theGap = 2;
constexpr std::size_t theWidestWhole = 44;  // one long name must not push all others aside

}  // namespace

/// Where a column that is shown starts, and how wide it is.
struct TextTable::Place
{
    std::size_t column;
    std::size_t start;
    std::size_t width;
};

void TextTable::add(const std::vector<std::string>& cells)
{
    Row row;
    for (std::size_t at = 0; at < cells.size(); ++at)
        row.push_back(myColumns[at].isExact ? visible(cells[at]) : oneLine(cells[at]));
    row.resize(myColumns.size());
    myRows.push_back(std::move(row));
}

/// The columns that the longest cell needs; 0 where no row has anything.
std::size_t TextTable::naturalWidth(std::size_t column) const
{
    std::size_t width = 0;
    for (const Row& row : myRows) width = std::max(width, columnsOf(row[column]));
    return width == 0 ? 0 : std::max(width, columnsOf(myColumns[column].heading));
}

std::vector<TextTable::Place> TextTable::places() const
{
    std::vector<Place> places;
    for (std::size_t column = 0; column < myColumns.size(); ++column)
        if (const std::size_t width = naturalWidth(column)) places.push_back({column, 0, width});

    std::vector<Place*> texts;
    std::size_t taken = myIndent + theGap * (places.empty() ? 0 : places.size() - 1);
    for (Place& place : places)
    {
        if (myColumns[place.column].fit == Fit::whole)
            taken += place.width = std::min(place.width, theWidestWhole);
        else
            texts.push_back(&place);
    }
    shareRoom(texts, thePageWidth > taken ? thePageWidth - taken : 0);

    std::size_t start = myIndent;
    for (Place& place : places)
    {
        place.start = start;
        start += place.width + theGap;
    }
    return places;
}

/// Shares what the names leave free among the texts: what a short one does not need goes to the
/// longer ones.
void TextTable::shareRoom(std::vector<Place*>& texts, std::size_t room) const
{
    std::stable_sort(texts.begin(), texts.end(),
                     [](const Place* a, const Place* b) { return a->width < b->width; });
    std::size_t left = texts.size();
    for (Place* text : texts)
    {
        text->width =
            std::min(text->width, std::max(room / left--, myColumns[text->column].narrowest));
        room -= std::min(room, text->width);
    }
}

/// A cell as the lines that it takes in its place.
std::vector<std::string> TextTable::cellLines(const std::string& cell, const Place& place) const
{
    switch (myColumns[place.column].fit)
    {
        case Fit::whole:
            break;
        case Fit::clip:
            return {clipped(cell, place.width)};
        case Fit::wrap:
            return wrapped(cell, place.width);
    }
    return {cell};
}

std::string TextTable::rowText(const Row& row, const std::vector<Place>& places) const
{
    std::vector<std::vector<std::string>> cells;
    std::size_t height = 1;
    for (const Place& place : places)
    {
        cells.push_back(cellLines(row[place.column], place));
        height = std::max(height, cells.back().size());
    }

    std::string text;
    for (std::size_t line = 0; line < height; ++line)
    {
        std::size_t used = 0;
        for (std::size_t i = 0; i < places.size(); ++i)
        {
            if (line >= cells[i].size() || cells[i][line].empty()) continue;
            if (used > 0 && used + theGap > places[i].start)
            {
                text += '\n';
                used = 0;
            }
            text.append(places[i].start - used, ' ').append(cells[i][line]);
            used = places[i].start + columnsOf(cells[i][line]);
        }
        text += '\n';
    }
    return text;
}

std::string TextTable::text() const
{
    const std::vector<Place> shown = places();
    Row headings;
    for (const Column& column : myColumns) headings.push_back(column.heading);
    const bool hasHeadings = std::any_of(headings.begin(), headings.end(),
                                         [](const std::string& cell) { return !cell.empty(); });
    std::string text = hasHeadings && !shown.empty() ? rowText(headings, shown) : "";
    for (const Row& row : myRows) text += rowText(row, shown);
    return text;
}

void PropertyList::add(const std::string& name, std::string_view value)
{
    if (!oneLine(value).empty()) myTable.add({name, std::string(value)});
}

std::string heading(std::string_view text, char line)
{
    const std::string title = oneLine(text);
    return '\n' + bold(title) + '\n' + std::string(std::min(columnsOf(title), thePageWidth), line) +
           '\n';
}
