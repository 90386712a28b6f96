// SPDX-License-Identifier: Apache-2.0
//
// The row kernels, written once over lanes; each form's source file includes this. No header with
// inline functions may be included here (lanes.h tells why).
#include <cstddef>
#include <cstdint>

#include "base/lanes.h"
#include "lut/row_kernels.h"

namespace lumoxa::LUMOXA_LANES {
namespace {

/// Runs `body` over a row in place, whole lanes at a time.
template <class Body>
void overLanes(float* row, int count, const Body& body) {
    int done = 0;
    for (; done + kLanes <= count; done += kLanes)
        store(body(load(row + done)), row + done);
    if (done == count) return;
    float rest[kLanes] = {};
    for (int i = 0; done + i < count; ++i)
        rest[i] = row[done + i];
    store(body(load(rest)), rest);
    for (int i = 0; done + i < count; ++i)
        row[done + i] = rest[i];
}

/// The integer part of positions, kept to 0 .. last.
Ints segmentsOf(Floats x, Ints last) {
    constexpr float kLargestBelow2Pow31 = 2147483520.0f;
    return smaller(truncated(clipped(x, all(kLargestBelow2Pow31))), last);
}

/// Interpolates between the entries from which a pair was read.
Floats between(Ints pair, Floats fraction) {
    const Floats low = toFloats(pair & all(0xFFFFU));
    const Floats high = toFloats(pair >> 16);
    return low + (high - low) * fraction;
}

void lookUp(const uint16_t* table, int32_t lastSegment, float* row, int count) {
    const Ints last = all(static_cast<uint32_t>(lastSegment));
    overLanes(row, count, [&](Floats x) {
        const Ints segment = segmentsOf(x, last);
        return between(gatherPairs(table, segment), x - toFloats(segment));
    });
}

template <class Sample>
void spread(const Sample* samples, int channels, int pixels, float scale, Row* rows) {
    // Lanes of pixels that are apart come together in the second loop; the first has all samples.
    constexpr int kMostFlat = 4;
    if (channels > kMostFlat) {
        for (int c = 0; c < channels; ++c) {
            for (int i = 0; i < pixels; ++i)
                rows[c][i] = static_cast<float>(samples[i * channels + c]) * scale;
        }
        return;
    }
    float flat[kMostFlat * kBlockPixels];
    const int count = pixels * channels;
    int done = 0;
    for (; done + kLanes <= count; done += kLanes)
        store(toFloats(widened(samples + done)) * all(scale), flat + done);
    for (; done < count; ++done)
        flat[done] = static_cast<float>(samples[done]) * scale;
    for (int c = 0; c < channels; ++c) {
        for (int i = 0; i < pixels; ++i)
            rows[c][i] = flat[i * channels + c];
    }
}

void locate(const float* row, int pixels, float scale, int32_t lastCell, uint32_t stride,
            uint32_t* cell, float* fraction) {
    const Ints last = all(static_cast<uint32_t>(lastCell));
    for (int i = 0; i < pixels; i += kLanes) {
        const Floats position = load(row + i) * all(scale);
        const Ints k = segmentsOf(position, last);
        store(position - toFloats(k), fraction + i);
        store(load(cell + i) + k * all(stride), cell + i);
    }
}

/// Six tetrahedra along the axis of equal coordinates. Ties fall to one fixed side, which matters
/// because equal values summed in another order may round differently: of two equal fractions that
/// are the larger ones the later dimension comes first, of two that are the smaller ones the
/// earlier; of three the order is 2, 0, 1.
struct Tetrahedra {
    static constexpr int kDimensions = 3;
    static constexpr int dimensionOf(int term) { return term; }
    /// For dimensions a < b: where the path takes b before a.
    static Ints laterFirst(const Floats* f, int a, int b) {
        const Floats other = f[kDimensions - a - b];
        const Ints tie = b == 2 ? without(all(~0U), other > f[b]) : f[b] > other;
        return (f[b] > f[a]) | without(tie, f[a] > f[b]);
    }
};

/// Likewise 24 pentahedra, one for each order of the fractions: of two equal ones, the earlier
/// dimension comes first. Terms are added up from the last dimension to the first.
struct Pentahedra {
    static constexpr int kDimensions = 4;
    static constexpr int dimensionOf(int term) { return kDimensions - 1 - term; }
    static Ints laterFirst(const Floats* f, int a, int b) { return f[b] > f[a]; }
};

/// The node from which each pixel's path steps along each dimension: beyond the cell's lowest by
/// one step along every dimension that comes before. All without branches, which noise would
/// mispredict.
template <class Scheme>
void findPaths(const uint32_t* strides, const uint32_t* cell, const Row* fraction, int pixel,
               uint32_t (*from)[kLanes]) {
    Floats f[Scheme::kDimensions];
    Ints node[Scheme::kDimensions];
    for (int d = 0; d < Scheme::kDimensions; ++d) {
        f[d] = load(fraction[d] + pixel);
        node[d] = load(cell + pixel);
    }
    for (int a = 0; a < Scheme::kDimensions; ++a) {
        for (int b = a + 1; b < Scheme::kDimensions; ++b) {
            const Ints later = Scheme::laterFirst(f, a, b);
            node[a] = node[a] + (all(strides[b]) & later);
            node[b] = node[b] + without(all(strides[a]), later);
        }
    }
    for (int d = 0; d < Scheme::kDimensions; ++d)
        store(node[d], from[d]);
}

/// A simplex' interpolant is affine: the coefficient of a dimension is the difference of the two
/// nodes that the path's step along it joins, of integers below 2^16 and so exact. Lanes are the
/// outputs of two pixels.
template <class Scheme>
void interpolate(const uint16_t* nodes, const uint32_t* strides, const uint32_t* cell,
                 const Row* fraction, int pixels, float* groups) {
    for (int i = 0; i < pixels; i += kLanes) {
        uint32_t from[Scheme::kDimensions][kLanes];
        findPaths<Scheme>(strides, cell, fraction, i, from);
        for (int p = 0; p < kLanes; p += 2) {
            Floats sum = all(0.0f);
            for (int j = 0; j < Scheme::kDimensions; ++j) {
                const int d = Scheme::dimensionOf(j);
                const uint16_t* const first = nodes + from[d][p];
                const uint16_t* const second = nodes + from[d][p + 1];
                const Ints low = loadFours(first, second);
                const Ints high = loadFours(first + strides[d], second + strides[d]);
                const Floats term =
                    toFloats(high - low) * twoFours(fraction[d][i + p], fraction[d][i + p + 1]);
                sum = j == 0 ? term : sum + term;
            }
            const Ints lowest = loadFours(nodes + cell[i + p], nodes + cell[i + p + 1]);
            store(sum + toFloats(lowest), groups + (i + p) * kOutputGroup);
        }
    }
}

/// Corners in the order of their numbers, of which the last dimension is the lowest bit.
void interpolateCubes(const uint16_t* nodes, const uint32_t* strides, const uint32_t* cell,
                      const Row* fraction, int pixels, float* groups) {
    constexpr int kCorners = 8;
    uint32_t corner[kCorners];
    for (uint32_t k = 0; k < kCorners; ++k)
        corner[k] = (k >> 2) * strides[0] + (k >> 1 & 1) * strides[1] + (k & 1) * strides[2];
    const Floats one = all(1.0f);
    for (int i = 0; i < pixels; i += kLanes) {
        const Floats x = load(fraction[0] + i), y = load(fraction[1] + i),
                     z = load(fraction[2] + i);
        const Floats ofX[2] = {one - x, x}, ofY[2] = {one - y, y}, ofZ[2] = {one - z, z};
        float weight[kCorners][kLanes];
        for (int k = 0; k < kCorners; ++k)
            store(ofX[k >> 2] * ofY[k >> 1 & 1] * ofZ[k & 1], weight[k]);
        for (int p = 0; p < kLanes; p += 2) {
            const uint16_t* const first = nodes + cell[i + p];
            const uint16_t* const second = nodes + cell[i + p + 1];
            Floats sum = all(0.0f);
            for (int k = 0; k < kCorners; ++k) {
                const Ints node = loadFours(first + corner[k], second + corner[k]);
                const Floats term = twoFours(weight[k][p], weight[k][p + 1]) * toFloats(node);
                sum = k == 0 ? term : sum + term;
            }
            store(sum, groups + (i + p) * kOutputGroup);
        }
    }
}

template <int Outputs, class Sample>
void finishAll(const GroupFinish& finish, const float* groups, int pixels, Sample* destination) {
    uint32_t places[kLanes];
    for (int i = 0; i < kLanes; ++i) {
        const int output = i % kOutputGroup;
        places[i] = output < Outputs ? static_cast<uint32_t>(output * finish.entries) : 0;
    }
    const Ints table = load(places), last = all(static_cast<uint32_t>(finish.entries - 2));
    for (int i = 0; i < pixels; i += 2) {
        Floats v = load(groups + i * kOutputGroup) * all(finish.scale);
        if (finish.curves != nullptr) {
            const Ints segment = segmentsOf(v, last);
            v = between(gatherPairs(finish.curves, table + segment), v - toFloats(segment));
        }
        const Ints samples = truncated(v * all(finish.sampleScale) + all(0.5f));
        if (i + 1 < pixels) {
            storePixels<Outputs>(samples, i + kOutputGroup < pixels, destination + i * Outputs);
        } else {
            storePixel<Outputs>(samples, destination + i * Outputs);
        }
    }
}

template <class Sample>
void finish(const GroupFinish& finish, const float* groups, int pixels, Sample* destination) {
    switch (finish.outputs) {
        case 1:
            return finishAll<1>(finish, groups, pixels, destination);
        case 2:
            return finishAll<2>(finish, groups, pixels, destination);
        case 3:
            return finishAll<3>(finish, groups, pixels, destination);
        default:
            return finishAll<4>(finish, groups, pixels, destination);
    }
}

}  // namespace

extern const RowKernels kRowKernels = {
    spread<uint8_t>,  spread<uint16_t>,        lookUp,
    locate,           interpolate<Tetrahedra>, interpolate<Pentahedra>,
    interpolateCubes, finish<uint8_t>,         finish<uint16_t>};

}  // namespace lumoxa::LUMOXA_LANES
