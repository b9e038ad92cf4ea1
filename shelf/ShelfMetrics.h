// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QtGlobal>

// Every size, alpha, colour, duration and limit of the shelf. Sizes are in points, durations in seconds, and an alpha
// goes from 0, invisible, to 1. ShelfGeometry.h computes frames from the sizes.
namespace ShelfMetrics {

inline QColor white(float alpha)
{
    return QColor::fromRgbF(1, 1, 1, alpha);
}

// What the shelf holds
constexpr qsizetype kMostItems = 50;
constexpr qsizetype kConfirmFrom = 2; // clearing so many items asks first

// The panel on its screen
constexpr double kPanelGap = 4;     // to the edge of the screen
constexpr double kCornerGap = 20;   // to the screen corner, for the start and end alignments
constexpr double kScreenMargin = 8; // free space, both sides together, beside a panel that fills the screen
constexpr qsizetype kFewestSlots = 1;
constexpr qsizetype kMostSlots = 10;

// A column of tiles: the panel is wider than a tile and higher than the tiles by these.
constexpr double kColumnWidth = 44;
constexpr double kColumnHeader = 44;
// A row of tiles
constexpr double kRowTileWidth = 22;
constexpr double kRowHeader = 39;
constexpr double kRowHeight = 28;
// The stack of tiles
constexpr double kTileSpacing = 6;
constexpr double kStackInset = 6; // at either end

// The panel's background. It is dark enough that white text is readable over a white wallpaper.
inline const QColor kBackground(34, 34, 38);
constexpr float kBackgroundAlpha = 0.84F;
constexpr float kRimAlpha = 0.13F; // of the fine light line around the panel
constexpr double kPanelCornerRadius = 14;
constexpr double kHighlightBorder = 2;  // while a drag is over the panel
constexpr double kTintThreshold = 0.01; // a weaker tint is not drawn at all
constexpr double kTintStrength = 0.6;   // alpha of the tint at full intensity

// The header
constexpr double kHeaderTop = 8;
constexpr double kHeaderHeight = 24;
constexpr double kHeaderWidth = 36; // as a column beside a row of tiles
constexpr double kButtonSize = 20;
constexpr double kButtonMargin = 8;
constexpr double kButtonEnd = 10;
constexpr double kButtonRadius = 5;
constexpr float kButtonHoverAlpha = 0.14F;
constexpr float kButtonPressedAlpha = 0.24F;
constexpr double kHeaderSymbolSize = 16;
constexpr float kSymbolAlpha = 0.65F; // of the symbols in the header and on the cursor shelf
constexpr double kSeparatorInset = 8;
constexpr double kSeparatorGap = 2;
constexpr double kSeparatorThickness = 1;
constexpr float kSeparatorAlpha = 0.12F;

// Below the header
constexpr double kScrollMargin = 8;
constexpr int kOverlayScrollerWidth = 9; // of the scroller that lies over a column of tiles
constexpr double kScrollerThickness = 5;
constexpr float kScrollerRestingAlpha = 0.28F;
constexpr float kScrollerActiveAlpha = 0.5F;
constexpr float kDropLabelAlpha = 0.35F;
constexpr int kDropLabelFontSize = 11;
constexpr int kDropLabelOffset = 10; // below the middle

// A tile
constexpr double kTileMargin = 16;
constexpr double kReserveWithName = 30;
constexpr double kReserveWithoutName = 16;
constexpr double kTileCornerRadius = 8;
constexpr double kSelectionBorder = 2;
constexpr double kHoverAlpha = 0.12; // of the white over a tile under the pointer
constexpr double kImageInset = 4;
constexpr double kImageBottomWithName = 27;
constexpr double kImageBottomWithoutName = 8;
constexpr double kImageTop = 8;
constexpr double kImageCornerRadius = 6;
constexpr double kFileIconSize = 32;
constexpr double kNameInset = 2;
constexpr double kNameOverhang = 5;
constexpr double kNameHeight = 26;
constexpr int kNameFontSize = 11;
constexpr int kNameLines = 2;
constexpr float kNameShadowAlpha = 0.55F; // keeps white letters readable over a light wallpaper
constexpr double kRemoveOffset = 20;
constexpr double kRemoveSize = 18;
constexpr double kRemoveCornerRadius = 9;
constexpr double kRemoveSymbolSize = 8;
inline const QColor kRemoveColor = QColor::fromRgbF(1.0F, 0.231F, 0.188F, 0.85F);

// The cursor shelf: the small drop zone beside the pointer
constexpr double kCursorShelfSize = 88;
constexpr int kCursorSymbolSize = 34;
constexpr double kPointerGapX = 24;
constexpr double kPointerGapY = 16;

// Durations
constexpr double kShelfFadeIn = 0.22;
constexpr double kShelfFadeOut = 0.18;
constexpr double kCursorFadeIn = 0.15;
constexpr double kCursorFadeOut = 0.12;
constexpr double kTileFadeOut = 0.18;
constexpr double kHoverFade = 0.15;
constexpr double kEmptyShelfDelay = 1.5; // after the last item is gone, the shelf stays visible for this time

} // namespace ShelfMetrics
