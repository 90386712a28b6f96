// SPDX-License-Identifier: Apache-2.0
#include "convert/stages_plan.h"

#include <algorithm>

#include "convert/sample_codec.h"

namespace lumoxa::engine {
namespace {

class StagesPlan : public Plan {
  public:
    explicit StagesPlan(const Chain& chain)
        : Plan(chain.inputs, chain.outputs),
          stages_(chain.stages),
          inSpace_(chain.inSpace),
          outSpace_(chain.outSpace) {}

    void convert(SampleType in, const void* source, SampleType out, void* destination,
                 ptrdiff_t pixels) const override {
        const SampleCodec from(inSpace_, inputs(), in), to(outSpace_, outputs(), out);
        const auto* s = static_cast<const uint8_t*>(source);
        auto* d = static_cast<uint8_t*>(destination);
        const size_t sourceBytes = bytesOf(in) * static_cast<size_t>(inputs());
        const size_t destinationBytes = bytesOf(out) * static_cast<size_t>(outputs());
        Row rows[kMaxChannels];
        for (ptrdiff_t done = 0; done < pixels; done += kBlockPixels) {
            const int n = static_cast<int>(std::min<ptrdiff_t>(kBlockPixels, pixels - done));
            from.load(s + static_cast<size_t>(done) * sourceBytes, n, rows);
            stages_.run(rows, n);
            to.store(rows, n, d + static_cast<size_t>(done) * destinationBytes);
        }
    }

  private:
    StageList stages_;
    uint32_t inSpace_;
    uint32_t outSpace_;
};

}  // namespace

std::shared_ptr<const Plan> makeStagesPlan(const Chain& chain) {
    return std::make_shared<StagesPlan>(chain);
}

}  // namespace lumoxa::engine
