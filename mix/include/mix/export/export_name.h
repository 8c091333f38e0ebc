// ExportName: what exported files and their folders are called. Pure.
#pragma once

#include <ctime>
#include <string>

#include "mix/export/exporter.h"

namespace brindlehum::ExportName {

// "rain_1.250-3.000s_714up-broadcast.wav": the source's name, the range if one was asked for, and the form. At most 255
// bytes of UTF-8 without a character that a disk of Windows or a share refuses.
std::string fileName(const Exporter::Request& request);
// The name to try when those of smaller numbers are taken: "rain 2.wav" for 2; the name itself for 1.
std::string numbered(const std::string& fileName, int number);
// "2026-11-25", in local time.
std::string day(std::time_t time);

}  // namespace brindlehum::ExportName
