#pragma once

#include "objects/SparselySampledImageObject.h"
#include "tests/support/PlainThickness.h"

#include <algorithm>
#include <cmath>

// What a measurer publishes, made from a plain measurement: the samples by their place, and over them, at
// (0, 0, 0) to (0, 0, 3), maximum, mean of the records, mean and standard deviation.
inline SampleMap plainSamples(const PlainThickness &measured)
{
    SampleMap samples;
    std::vector<double> records;
    double sum = 0.0, squares = 0.0, sumOfRecords = 0.0;
    for (const auto &[vertex, distance] : measured.samples) {
        samples[{vertex.x, vertex.y, vertex.z}] = distance;
        sum += distance;
        // A distance above or below all that were kept is kept; of more than ten the smallest goes.
        if (records.empty() || distance > *std::max_element(records.begin(), records.end()) ||
            distance < *std::min_element(records.begin(), records.end()))
            records.push_back(distance);
        if (records.size() > 10)
            records.erase(std::min_element(records.begin(), records.end()));
    }
    if (measured.samples.empty())
        return samples;
    const auto count = static_cast<double>(measured.samples.size());
    for (const auto &sample : measured.samples)
        squares += (sample.second - sum / count) * (sample.second - sum / count);
    std::sort(records.begin(), records.end());
    for (const double record : records)
        sumOfRecords += record;
    samples[{0, 0, 0}] = records.back();
    samples[{0, 0, 1}] = sumOfRecords / static_cast<double>(records.size());
    samples[{0, 0, 2}] = sum / count;
    samples[{0, 0, 3}] = std::sqrt(squares / count);
    return samples;
}
