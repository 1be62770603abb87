#include "serialization/dicom/DicomHeader.h"

#include "serialization/dicom/DicomText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace dicom {

const DicomElement *DicomHeader::find(Tag tag) const
{
    const auto found = std::find_if(elements.begin(), elements.end(),
                                    [tag](const DicomElement &element) { return element.tag == tag; });
    return found == elements.end() ? nullptr : &*found;
}

std::string DicomHeader::text(Tag tag) const
{
    const DicomElement *element = find(tag);
    if (element == nullptr)
        return {};
    const DicomElement *set = find(tags::characterSet);
    return elementText(*element, set != nullptr ? std::string_view(set->value) : std::string_view());
}

long DicomHeader::integer(Tag tag, long otherwise) const
{
    const std::vector<double> values = numbers(tag);
    if (values.empty() || std::abs(values.front()) > 1e15)
        return otherwise;
    return static_cast<long>(values.front());
}

std::vector<double> DicomHeader::numbers(Tag tag) const
{
    return parseNumbers(text(tag));
}

bool DicomHeader::isImage() const
{
    return pixels.present && integer(tags::rows, 0) > 0 && integer(tags::columns, 0) > 0;
}

std::vector<double> parseNumbers(std::string_view text)
{
    std::vector<double> values;
    const auto skipBlanks = [&text] {
        while (!text.empty() && (text.front() == ' ' || text.front() == '\0'))
            text.remove_prefix(1);
    };
    while (true) {
        skipBlanks();
        if (!text.empty() && text.front() == '+')
            text.remove_prefix(1);
        double value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || !std::isfinite(value))
            return values;
        values.push_back(value);
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        skipBlanks();
        if (text.empty() || text.front() != '\\')
            return values;
        text.remove_prefix(1);
    }
}

} // namespace dicom
