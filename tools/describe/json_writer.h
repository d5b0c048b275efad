// JSON as this tool prints it: ASCII, no spaces, keys in ascending order, written as it comes.
#pragma once

#include "base/types.h"

#include <cstdio>
#include <string_view>
#include <vector>

class JsonWriter {
  public:
    // The file is borrowed. Memory may lack for this, and for objects and arrays that lie deeper one inside
    // another than is usual.
    explicit JsonWriter(std::FILE* pOut) : m_out(pOut) { m_levels.reserve(USUAL_DEPTH); }

    void BeginObject() { Begin('{', '}'); }
    void EndObject() { End(); }
    void BeginArray() { Begin('[', ']'); }
    void EndArray() { End(); }

    // Objects and arrays begun and not ended.
    size_t Depth() const { return m_levels.size(); }

    // Gives a key that waits for its value a null, and ends what was begun beyond that depth.
    void CloseTo(size_t nDepth);

    // A literal; keys of one object come in ascending order. Returns the writer, for the value.
    JsonWriter& Key(std::string_view name);

    void Number(i64 nValue);
    void Bool(bool bValue);
    void Null();
    // Each byte is one Latin-1 character.
    void Text(std::string_view bytes);

    template <typename... Values>
    void Numbers(Values... values) {
        (Number(i64{values}), ...);
    }

    void EndLine() { std::fputc('\n', m_out); }

  private:
    // An object or array begun.
    struct Level {
        char end;
        std::string_view key;  // the last one
    };

    static constexpr size_t USUAL_DEPTH = 32;

    void Begin(char bracket, char end);
    void End();
    void Separate();

    std::FILE* m_out;
    bool m_bFirst = true;  // nothing stands before the next value
    bool m_bKeyWaits = false;
    std::vector<Level> m_levels;
};
