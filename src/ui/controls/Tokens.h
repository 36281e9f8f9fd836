// The look's constants: colours and radii of every painted control and of the style sheet. Lengths are logical pixels.
#pragma once

#include <QColor>

namespace qm::tokens {

// Ground
inline const QColor kGroundTop{0x00, 0x00, 0x00};
inline const QColor kGroundBottom{0x55, 0x55, 0x55};
inline const QColor kBar{0x14, 0x15, 0x16};
inline const QColor kPanel{0x1B, 0x1C, 0x1E};
inline const QColor kPanelHigh{0x2B, 0x2C, 0x2E};
inline const QColor kWell{0, 0, 0, 117};
inline const QColor kLine{255, 255, 255, 23};
inline const QColor kLineStrong{255, 255, 255, 41};
inline const QColor kStripGround{0x0C, 0x0D, 0x0E};

// Text
inline const QColor kText{0xF3, 0xF5, 0xF7};
inline const QColor kText2{0xB9, 0xC0, 0xC8};
inline const QColor kText3{0x9B, 0xA3, 0xAC};
inline const QColor kMenuText{0xDD, 0xE1, 0xE5};
inline const QColor kRowText{0xE2, 0xE6, 0xEA};
inline const QColor kSelectedText2{0xDD, 0xE4, 0xEA};
inline const QColor kHintText{0xD3, 0xD8, 0xDD};
inline const QColor kChipText{0xE9, 0xEC, 0xEF};
inline const QColor kIcon{0xC9, 0xCF, 0xD6};
inline const QColor kWhite{255, 255, 255};

// Meaning: aqua moves, amber loops, red records or destroys
inline const QColor kAqua{0x3F, 0xD2, 0xE2};
inline const QColor kAquaHigh{0x86, 0xED, 0xF7};
inline const QColor kAquaLow{0x24, 0xB3, 0xC5};
inline const QColor kAquaInk{0x04, 0x26, 0x2B};
inline const QColor kAmber{0xFF, 0xB4, 0x54};
inline const QColor kAmberHigh{0xFF, 0xD0, 0x8C};
inline const QColor kAmberLow{0xEF, 0x9B, 0x2D};
inline const QColor kAmberInk{0x2B, 0x18, 0x00};
inline const QColor kRed{0xFF, 0x5F, 0x57};
inline const QColor kRedLow{0xE0, 0x3C, 0x36};

// Scale labels and read-outs: the user's choice of four, exact values
inline const QColor kScaleCyan{0x00, 0xFF, 0xFF};
inline const QColor kScaleWhite{0xFF, 0xFF, 0xFF};
inline const QColor kScaleOrange{0xFF, 0x80, 0x00};
inline const QColor kScaleGreen{0x00, 0xFF, 0x00};

// On white paper
inline const QColor kPaperText{0x16, 0x18, 0x1B};
inline const QColor kPaperText2{0x56, 0x5D, 0x64};
inline const QColor kPaperText3{0x2B, 0x2F, 0x33};
inline const QColor kLink{0x0B, 0x6B, 0x78};
inline const QColor kLinkPressed{0x07, 0x48, 0x51};

// Chips, faces, focus
inline const QColor kChip{255, 255, 255, 22};
inline const QColor kChipHover{255, 255, 255, 38};
inline const QColor kChipPressed{0, 0, 0, 89};
inline const QColor kSelection{0x3F, 0xD2, 0xE2, 77};
inline const QColor kFocus{0xBD, 0xF6, 0xFC};
inline const QColor kNeutralBar{0x8A, 0x91, 0x99};
inline const QColor kGrooveEdge{0x7A, 0x81, 0x88};  // contrast of 3:1 on every ground it is drawn on

inline constexpr double kDimOpacity = 0.42;
inline constexpr double kChipRadius = 6;
inline constexpr double kCardRadius = 10;
inline constexpr double kFaceRadius = 14;

}  // namespace qm::tokens
