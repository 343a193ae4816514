#pragma once
// Conversions between the framework's wide strings and Qt's strings, and between the grid's
// colour values (0x00BBGGRR) and Qt's colours.
#include "framework/String.h"

#include <QColor>
#include <QString>

#include <cstdint>

inline QString ToQ(const CString& text) {
    return QString::fromStdWString(text);
}

inline CString FromQ(const QString& text) {
    return CString(text.toStdWString());
}

/// The Qt colour of a colour value; invalid for the grid's default colour.
inline QColor ToQColor(uint32_t value) {
    if (value == 0xFFFFFFFFu)
        return {};
    return QColor(static_cast<int>(value & 0xFF), static_cast<int>((value >> 8) & 0xFF),
                  static_cast<int>((value >> 16) & 0xFF));
}
