// SPDX-License-Identifier: GPL-3.0-or-later
#include "ButtonLayout.h"

#include <array>

namespace lantern {
namespace {

constexpr int kMargin = 2;

// The columns and rows in which a text button's picture may stand.
enum Column { LeftColumn, MiddleColumn, RightColumn };
enum Row { TopRow, MiddleRow, BottomRow };

constexpr std::array<TextFlags, 3> kFlagsOfColumn = {
    TextWrapped | TextLeft, TextWrapped | TextCentred, TextWrapped | TextRight};

int WithGap(int extent)
{
    return extent == 0 ? 0 : extent + 1;
}

int TextLeftIn(Column column, int width, int textRight, int pictureWidth)
{
    switch (column) {
    case LeftColumn:
        return pictureWidth + kMargin;
    case MiddleColumn:
        return (width - textRight) / 2;
    default:
        return width - textRight - pictureWidth - kMargin;
    }
}

// In the middle column the picture stands over or under the text, elsewhere beside it.
int TextTopIn(Column column, Row row, int height, int textBottom, int pictureHeight)
{
    const int above = column == MiddleColumn ? pictureHeight : 0;
    switch (row) {
    case TopRow:
        return above + kMargin;
    case MiddleRow:
        return (height - textBottom + (column == MiddleColumn ? above + 1 : 0)) / 2;
    default:
        return height - textBottom - above - kMargin;
    }
}

int PictureLeftIn(Column column, int width, int pictureWidth)
{
    switch (column) {
    case LeftColumn:
        return kMargin;
    case MiddleColumn:
        return (width - pictureWidth) / 2;
    default:
        return width - pictureWidth - kMargin;
    }
}

int PictureTopIn(Row row, int height, int pictureHeight)
{
    switch (row) {
    case TopRow:
        return kMargin;
    case MiddleRow:
        return (height - pictureHeight) / 2;
    default:
        return height - pictureHeight - kMargin;
    }
}

} // namespace

PicButtonRects LayoutPicButton(QSize button, QSize picture, bool isCheckBox,
                               const MeasureCaption& measure)
{
    constexpr int kGap = 3; // between the picture of a check box and its caption
    const int width = button.width();
    const int height = button.height();
    const int left = isCheckBox ? picture.width() + kGap : 0;

    PicButtonRects rects;
    rects.pictureX = isCheckBox ? 0 : (width - picture.width()) / 2;
    rects.pictureY = (height - picture.height()) / 2;
    const Box text = measure({left, 0, width - 1, height - 1}, TextWrapped);
    rects.text = text.Moved((width - text.right) / 2, (height - text.bottom) / 2 - 1);
    if (isCheckBox) {
        rects.text.left = left;
        rects.text.right = width - 1;
    }
    rects.shadow = rects.text.Moved(1, 1);
    return rects;
}

TextButtonRects LayoutTextButton(const TextButtonRects& before, QSize button, QSize picture,
                                 std::int32_t position, bool isCaptionBlank,
                                 const MeasureCaption& measure)
{
    if (position < 0 || position > 8)
        return before;
    const auto column = static_cast<Column>(position % 3);
    const auto row = static_cast<Row>(position / 3);
    const int width = button.width();
    const int height = button.height();
    const int pictureWidth = WithGap(picture.width());
    const int pictureHeight = WithGap(picture.height());

    TextButtonRects rects;
    rects.flags = kFlagsOfColumn[column];
    const int right = column == MiddleColumn ? width - 5 : width - pictureWidth;
    const Box text = measure({0, 0, right, height - 5}, rects.flags);
    rects.text = text.Moved(TextLeftIn(column, width, text.right, pictureWidth),
                            TextTopIn(column, row, height, text.bottom, pictureHeight));
    rects.shifted = rects.text.Moved(1, 1);

    rects.pictureX = PictureLeftIn(column, width, picture.width());
    // In the very middle the picture stands on the text, if there is one.
    const bool standsOnText = column == MiddleColumn && row == MiddleRow && !isCaptionBlank;
    rects.pictureY = standsOnText ? rects.text.top - picture.height() - 1
                                  : PictureTopIn(row, height, picture.height());
    return rects;
}

} // namespace lantern
