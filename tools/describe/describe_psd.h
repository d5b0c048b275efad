// The structure of a Photoshop document.
#pragma once

class JsonWriter;
class PsdImage;

void DescribePsd(JsonWriter& json, const PsdImage& psd);
