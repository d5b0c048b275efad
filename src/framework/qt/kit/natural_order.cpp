#include "framework/qt/kit/natural_order.h"

#include "framework/qt/kit/convert.h"

#include <QCollator>
#include <QLocale>
#include <QString>

#include <algorithm>
#include <utility>

namespace {

// The locale of programs has no alphabet, and to the toolkit no numbers.
QCollator MakeCollator() {
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    return collator;
}

struct Entry {
    QCollatorSortKey key;
    std::string name;
};

bool ComesBefore(const Entry& one, const Entry& other) {
    const int order = one.key.compare(other.key);
    return order != 0 ? order < 0 : one.name < other.name;
}

}  // namespace

void SortNaturally(std::vector<std::string>& names) {
    const QCollator collator = MakeCollator();
    std::vector<Entry> entries;
    for (std::string& name : names)
        entries.push_back({collator.sortKey(ToDisplayText(name)), std::move(name)});
    std::ranges::sort(entries, ComesBefore);
    names.clear();
    for (Entry& entry : entries) names.push_back(std::move(entry.name));
}
