#pragma once

#include <QtGlobal>

// What a print covers; the values are the ones kept in the settings.
enum class GRPrintScope : qint32
{
    EntireList = 0,
    NeededItems = 1, // forced page starts can be ignored
    OneStore = 2,
};
