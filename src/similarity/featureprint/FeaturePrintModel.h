#pragma once

#include "platform/images/Bitmap.h"
#include "similarity/featureprint/FeaturePrint.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

namespace lumisort::similarity {

class Network;

enum class FeaturePrintFailure {
    unsupported, ///< the weights are missing or damaged: no photo can be analyzed, what() says what to do
    noPrint,     ///< this one picture has no print: it is empty, or its features are not finite or all zero
};

class FeaturePrintError : public std::runtime_error {
public:
    FeaturePrintError(FeaturePrintFailure failure, const std::string& message)
        : std::runtime_error(message), failure_(failure) {}

    FeaturePrintFailure failure() const noexcept { return failure_; }

private:
    FeaturePrintFailure failure_;
};

/// Prints are comparable, and the radii of the similarity levels hold, only between prints of equal identity.
struct FeaturePrintIdentity {
    std::string name;          ///< of the network and its cut
    std::string weightsSha256; ///< 64 lower-case hexadecimal digits
    int revision = 0;          ///< of everything around the weights: preprocessing, pooling, normalisation

    friend bool operator==(const FeaturePrintIdentity&, const FeaturePrintIdentity&) = default;
};

/// The network that turns a picture into its feature print: a MobileNetV2 backbone up to its twelfth inverted
/// residual (data/feature-print/NOTICE says where the weights come from). Immutable once loaded: one model
/// serves any number of threads, each with a Scratch of its own.
class FeaturePrintModel {
public:
    static constexpr int revision = 2;

    /// Where the weights lie: share/lumisort/ beside the folder of the running program, as installed, else
    /// the data folder of the source tree that the program was built from.
    static std::filesystem::path defaultWeights();

    /// Reads, checks and unpacks the weights (a few milliseconds). Throws FeaturePrintError `unsupported`.
    explicit FeaturePrintModel(const std::filesystem::path& weights = defaultWeights());
    ~FeaturePrintModel();
    FeaturePrintModel(FeaturePrintModel&&) noexcept;
    FeaturePrintModel& operator=(FeaturePrintModel&&) noexcept;

    const FeaturePrintIdentity& identity() const noexcept { return identity_; }

    /// The working memory of one thread, 2.5 MB, for any model. It holds no results between calls.
    class Scratch {
    public:
        Scratch();
        ~Scratch();
        Scratch(Scratch&&) noexcept;
        Scratch& operator=(Scratch&&) noexcept;

    private:
        friend class FeaturePrintModel;
        struct Buffers;
        std::unique_ptr<Buffers> buffers_;
    };

    /// The print of a whole, upright picture, whatever its proportions; transparent parts count as white.
    /// Takes less than ten milliseconds on one core, so it looks at no stop token. Allocates nothing, unless
    /// the picture is wider than 1,024 pixels or transparent, and larger than all such before it in this
    /// Scratch. Equal pictures give equal prints to the last bit on one machine, whatever other threads do.
    /// Throws FeaturePrintError `noPrint`.
    FeaturePrint print(const images::Bitmap& photo, Scratch& scratch) const;

private:
    FeaturePrintIdentity identity_;
    std::unique_ptr<const Network> network_;
};

} // namespace lumisort::similarity
