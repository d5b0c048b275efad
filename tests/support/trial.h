// A document's whole way under a plan: its file is loaded, its lists are filled, its pictures and its thumbnail are
// built, while calls fail, memory is short or rules are strict as the plan says. What came of it are texts, so that two
// runs can be compared.
#pragma once

#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "support/byte_builder.h"
#include "support/fault.h"

#include <ostream>
#include <string>
#include <vector>

struct Plan {
    Tolerance tolerance = Tolerance::None;
    Fault reads = {}, seeks = {}, lengths = {};  // of the file
    Fault requests = {};                         // for memory
    u64 nMemory = u64{1} << 30;                  // bytes of all large blocks together

    // Places in the lists, modulo their lengths. Without any: the first ones of each list, the lists' ends included.
    std::vector<Selection> selections = {};
};

struct Answer {
    bool IsOpen() const { return strLoad.starts_with("opened"); }
    bool operator==(const Answer& other) const { return strLoad == other.strLoad && pictures == other.pictures; }

    // "opened" with what was passed over, "refused" with the reason, or MEMORY.
    std::string strLoad;
    std::vector<std::string> pictures;  // the thumbnail, and each with its names and a hash of its pixels, or MEMORY

    bool bStruck = false;  // whether any of the faults was put in
};

inline const std::string MEMORY = "memory";

std::ostream& operator<<(std::ostream& out, const Answer& answer);

class Trial {
  public:
    // A second run loads into the same document.
    Answer Run(const Bytes& bytes, const Plan& plan = {});

  private:
    CVistrelDoc m_document;
    DisplayImage m_image;
};
