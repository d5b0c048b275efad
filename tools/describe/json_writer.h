// JSON as this tool prints it: ASCII, no spaces, keys in ascending order, written as it comes.
#pragma once

#include "base/types.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

class JsonWriter {
  public:
    // The file is borrowed.
    explicit JsonWriter(std::FILE* out) : m_out(out) {}

    void BeginObject() { Begin('{'); }
    void EndObject() { End('}'); }
    void BeginArray() { Begin('['); }
    void EndArray() { End(']'); }

    // Keys of one object come in ascending order. Returns the writer, for the value.
    JsonWriter& Key(std::string_view name);

    void Number(i64 value);
    void Bool(bool value);
    void Null();
    // Each byte is one Latin-1 character.
    void Text(std::string_view bytes);

    template <typename... Values>
    void Numbers(Values... values) {
        (Number(i64{values}), ...);
    }

    void EndLine() { std::fputc('\n', m_out); }

  private:
    void Begin(char bracket);
    void End(char bracket);
    void Separate();

    std::FILE* m_out;
    bool m_bFirst = true;             // nothing stands before the next value
    std::vector<std::string> m_keys;  // the last one of each object or array begun
};
