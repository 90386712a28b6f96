// SPDX-License-Identifier: Apache-2.0
#include "convert/curve.h"

#include <algorithm>
#include <array>

#include "base/pcs_encoding.h"
#include "base/power.h"
#include "base/row_math.h"
#include "convert/inverse_table.h"
#include "lut/table_lookup.h"

namespace lumoxa::engine {
namespace {

void clipRow(float* row, int count) {
    for (int i = 0; i < count; ++i)
        row[i] = clipped(row[i], 1.0f);
}

/// Steps at which a curve is sampled whose inverse has no closed form: those of 12 bits, as many
/// as tone curves in use have.
constexpr int kInverseSamples = 4096;

/// The inverse of a curve by its values at equal steps.
CurvePtr sampledInverse(const Curve& curve) {
    std::vector<float> values(kInverseSamples);
    for (int i = 0; i < kInverseSamples; ++i)
        values[static_cast<size_t>(i)] = static_cast<float>(i) / (kInverseSamples - 1);
    curve.run(values.data(), kInverseSamples);
    return std::make_shared<InverseTable>(values);
}

class IdentityCurve : public Curve {
  public:
    void run(float* row, int count) const override { clipRow(row, count); }
    bool isIdentity() const override { return true; }
    std::string describe() const override { return "identity"; }
    CurvePtr inverse() const override { return identityCurve(); }
    bool operator==(const Curve& other) const override { return other.isIdentity(); }
};

std::string shortNumber(double value) {
    std::string text = std::to_string(value);  // six decimals
    while (text.back() == '0')
        text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
}

class GammaCurve : public Curve {
  public:
    explicit GammaCurve(double gamma) : gamma_(gamma) {}

    void run(float* row, int count) const override {
        clipRow(row, count);
        powers(row, count, static_cast<float>(gamma_));
    }
    std::string describe() const override { return "gamma " + shortNumber(gamma_); }
    CurvePtr inverse() const override { return gammaCurve(1.0 / gamma_); }
    bool operator==(const Curve& other) const override {
        const auto* same = dynamic_cast<const GammaCurve*>(&other);
        return same != nullptr && same->gamma_ == gamma_;
    }

  private:
    double gamma_;
};

/// Exponents that powers() takes; others belong to no curve in use and are computed one by one.
bool usualExponent(double g) {
    return g > 0.0 && g <= 16.0;
}

class ParametricForm : public Curve {
  public:
    explicit ParametricForm(const Parametric& p) : p_(p) {}

    void run(float* row, int count) const override {
        constexpr int kStrip = 64;
        for (int done = 0; done < count; done += kStrip)
            runStrip(row + done, std::min(kStrip, count - done));
    }
    std::string describe() const override { return "parametric, gamma " + shortNumber(p_.g); }
    CurvePtr inverse() const override;
    bool operator==(const Curve& other) const override {
        const auto* same = dynamic_cast<const ParametricForm*>(&other);
        const auto list = [](const Parametric& p) {
            return std::array<double, 7>{p.g, p.a, p.b, p.c, p.d, p.e, p.f};
        };
        return same != nullptr && list(same->p_) == list(p_);
    }

  private:
    void runStrip(float* row, int count) const {
        float power[64];
        const auto a = static_cast<float>(p_.a), b = static_cast<float>(p_.b);
        const auto c = static_cast<float>(p_.c), d = static_cast<float>(p_.d);
        const auto e = static_cast<float>(p_.e), f = static_cast<float>(p_.f);
        clipRow(row, count);
        for (int i = 0; i < count; ++i)
            power[i] = a * row[i] + b;
        raise(power, count);
        for (int i = 0; i < count; ++i) {
            const float linear = c * row[i] + f;
            row[i] = clipped(row[i] >= d ? power[i] + e : linear, 1.0f);
        }
    }
    void raise(float* row, int count) const {
        if (usualExponent(p_.g)) return powers(row, count, static_cast<float>(p_.g));
        for (int i = 0; i < count; ++i)
            row[i] = row[i] > 0.0f ? lumoxa::power(row[i], static_cast<float>(p_.g)) : 0.0f;
    }

    Parametric p_;
};

/// Leads back through the power segment, the linear one below it, or the gap between them, which
/// rounded parameters leave.
class ParametricInverse : public Curve {
  public:
    ParametricInverse(const Parametric& p, CurvePtr forward)
        : p_(p),
          forward_(std::move(forward)),
          powerFrom_(lumoxa::power(std::max(p.a * p.d + p.b, 0.0), p.g) + p.e),
          linearTo_(p.c * p.d + p.f) {}

    void run(float* row, int count) const override {
        constexpr int kStrip = 64;
        for (int done = 0; done < count; done += kStrip)
            runStrip(row + done, std::min(kStrip, count - done));
    }
    std::string describe() const override {
        return "inverse parametric, gamma " + shortNumber(p_.g);
    }
    CurvePtr inverse() const override { return forward_; }
    bool operator==(const Curve& other) const override {
        const auto* same = dynamic_cast<const ParametricInverse*>(&other);
        return same != nullptr && *same->forward_ == *forward_;
    }

  private:
    void runStrip(float* row, int count) const {
        float root[64];
        const auto e = static_cast<float>(p_.e), b = static_cast<float>(p_.b);
        const auto perA = static_cast<float>(1.0 / p_.a);
        const auto d = static_cast<float>(p_.d), f = static_cast<float>(p_.f);
        const float perC = p_.c > 0 ? static_cast<float>(1.0 / p_.c) : 0.0f;
        const auto powerFrom = static_cast<float>(powerFrom_);
        const auto linearTo = static_cast<float>(linearTo_);
        const bool flatFoot = p_.c <= 0;
        clipRow(row, count);
        for (int i = 0; i < count; ++i)
            root[i] = row[i] - e;
        powers(root, count, static_cast<float>(1.0 / p_.g));
        for (int i = 0; i < count; ++i) {
            const float y = row[i];
            const float foot = flatFoot || y <= f ? 0.0f : (y - f) * perC;
            const float below = y <= linearTo ? std::min(foot, d) : d;
            const bool fromPower = y >= powerFrom && !(flatFoot && y <= f);
            row[i] = clipped(fromPower ? (root[i] - b) * perA : below, 1.0f);
        }
    }

    Parametric p_;
    CurvePtr forward_;
    double powerFrom_;  // value at which the power segment begins
    double linearTo_;   // value that the linear one would reach there
};

CurvePtr ParametricForm::inverse() const {
    const bool rising = usualExponent(p_.g) && p_.a > 0 && p_.c >= 0 && p_.d <= 1 &&
                        usualExponent(1.0 / p_.g) && p_.a * std::max(p_.d, 0.0) + p_.b >= -1e-4;
    if (!rising) return sampledInverse(*this);
    return std::make_shared<ParametricInverse>(p_, std::make_shared<ParametricForm>(p_));
}

class TableCurve : public Curve {
  public:
    explicit TableCurve(std::vector<uint16_t> entries)
        : entries_(std::move(entries)), last_(static_cast<float>(entries_.size() - 1)) {}

    void run(float* row, int count) const override {
        constexpr float kPerTop = 1.0f / kSampleMax16;
        for (int i = 0; i < count; ++i)
            row[i] = clipped(row[i], 1.0f) * last_;
        lookUpRow(entries_.data(), static_cast<int32_t>(entries_.size()) - 2, row, count);
        for (int i = 0; i < count; ++i)
            row[i] *= kPerTop;
    }
    bool isIdentity() const override {
        return entries_.size() == 2 && entries_[0] == 0 && entries_[1] == 65535;
    }
    std::string describe() const override { return "table of " + std::to_string(entries_.size()); }
    const std::vector<uint16_t>* table() const override { return &entries_; }
    CurvePtr inverse() const override {
        std::vector<float> values(entries_.size());
        std::transform(entries_.begin(), entries_.end(), values.begin(),
                       [](uint16_t entry) { return static_cast<float>(entry) / kSampleMax16; });
        return std::make_shared<InverseTable>(values);
    }
    bool operator==(const Curve& other) const override {
        return other.table() != nullptr && *other.table() == entries_;
    }

  private:
    std::vector<uint16_t> entries_;
    float last_;
};

}  // namespace

CurvePtr identityCurve() {
    return std::make_shared<IdentityCurve>();
}

CurvePtr gammaCurve(double gamma) {
    if (gamma == 1.0) return identityCurve();
    if (usualExponent(gamma)) return std::make_shared<GammaCurve>(gamma);
    return std::make_shared<ParametricForm>(Parametric{gamma, 1, 0, 0, 0, 0, 0});
}

CurvePtr parametricCurve(const Parametric& p) {
    const bool pure = p.a == 1 && p.b == 0 && p.d <= 0 && p.e == 0;
    return pure ? gammaCurve(p.g) : std::make_shared<ParametricForm>(p);
}

CurvePtr tableCurve(std::vector<uint16_t> entries) {
    return std::make_shared<TableCurve>(std::move(entries));
}

}  // namespace lumoxa::engine
