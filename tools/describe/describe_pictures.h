// What the two lists offer, and what each selection shows.
#pragma once

#include <string>

class CVistrelDoc;
class JsonWriter;

// strFileName: for the lines on standard error that name pictures which memory refuses.
void DescribeLayerList(JsonWriter& json, const CVistrelDoc& document, const std::string& strFileName);
