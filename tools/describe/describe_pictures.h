// What the two lists offer, and what each selection shows.
#pragma once

#include "base/types.h"

class CVistrelDoc;
class JsonWriter;
struct FileNames;

// names: for the lines on standard error that name pictures which memory refuses. Every key of a
// picture is null once those before it have passed nMostPixels together.
void DescribeLayerList(JsonWriter& json, const CVistrelDoc& document, const FileNames& names,
                       u64 nMostPixels);
