// The pictures in samples/, as the bytes of their files.
#pragma once

#include "support/byte_builder.h"

Bytes EveningPicture();   // IFF: 32 colours in five planes, packed
Bytes BallPicture();      // IFF: 16 colours and an alpha picture of eight planes
Bytes MarbleMipMaps();    // IFF: a LIST with four sizes of one picture and their colour map in a PROP
Bytes LanternDocument();  // Photoshop: layers with transparency and a mask, two alpha channels
