// Sets of directions on the sphere, and the Ambisonic decoders built on them.
#include <cmath>
#include <numeric>

#include "degrees.h"
#include "spatial/ambisonics.h"

namespace brindlehum::Ambisonics {
namespace {

// The number of directions that AllRAD pans, and that energy is averaged over.
constexpr int virtualDirections = 240;
constexpr int energyDirections = 400;

// Computes the max-rE decoder row of a direction; evaluates it at the inversely turned direction to turn the field.
class DecoderRows {
public:
    DecoderRows(int order, const Rotation& rotation)
        : order_(order), weights_(maxRE(order)), rotation_(rotation.matrix()) {}

    std::vector<double> row(const Direction& direction, double scale) const {
        std::vector<double> row = sh(order_, Mat3::transposeApply(rotation_, direction.unitVector()));
        for (size_t k = 0; k < row.size(); ++k) {
            const int degree = degreeOf(k);
            row[k] *= scale * weights_[size_t(degree)] * (2 * degree + 1);
        }
        return row;
    }

private:
    int order_;
    std::vector<double> weights_;
    Mat3x3 rotation_;
};

Direction normalized(double x, double y, double z) {
    const double length = std::sqrt(x * x + y * y + z * z);
    return Direction::fromVector({x / length, y / length, z / length});
}

Grid makeLebedev26() {
    Grid grid;
    const auto add = [&grid](double x, double y, double z, double weight) {
        grid.dirs.push_back(normalized(x, y, z));
        grid.weights.push_back(weight);
    };
    for (const double sign : {1.0, -1.0}) { add(sign, 0, 0, 1.0 / 21); }
    for (const double sign : {1.0, -1.0}) { add(0, sign, 0, 1.0 / 21); }
    for (const double sign : {1.0, -1.0}) { add(0, 0, sign, 1.0 / 21); }
    for (const double a : {-1.0, 1.0}) {
        for (const double b : {-1.0, 1.0}) {
            add(a, b, 0, 4.0 / 105);
            add(a, 0, b, 4.0 / 105);
            add(0, a, b, 4.0 / 105);
        }
    }
    for (const double a : {-1.0, 1.0}) {
        for (const double b : {-1.0, 1.0}) {
            add(a, b, -1, 9.0 / 280);
            add(a, b, 1, 9.0 / 280);
        }
    }
    return grid;
}

}  // namespace

std::vector<Direction> fibonacci(int n) {
    constexpr double goldenAngle = 2.399963229728653;  // radians
    std::vector<Direction> directions;
    for (int i = 0; i < n; ++i) {
        const double z = 1 - 2 * (i + 0.5) / n;
        const double r = std::sqrt(1 - z * z);
        const double angle = i * goldenAngle;
        directions.push_back(Direction::fromVector({r * std::cos(angle), r * std::sin(angle), z}));
    }
    return directions;
}

const Grid& lebedev26() {
    static const Grid grid = makeLebedev26();
    return grid;
}

Matrix samplingDecoder(int order, const std::vector<Direction>& dirs, const std::vector<double>& weights,
                       const Rotation& rotation, bool normalize) {
    const auto count = double(dirs.size());
    const double mean = weights.empty() ? 1.0 : std::accumulate(weights.begin(), weights.end(), 0.0) / count;
    const DecoderRows rows(order, rotation);
    Matrix matrix;
    for (size_t i = 0; i < dirs.size(); ++i) {
        const double weight = weights.empty() ? 1.0 : weights[i];
        matrix.push_back(rows.row(dirs[i], weight / mean / count));
    }
    return normalize ? energyNormalized(std::move(matrix), order) : matrix;
}

Matrix allradDecoder(int order, const std::vector<Direction>& speakers, const Rotation& rotation) {
    const DecoderRows rows(order, rotation);
    const VBAP vbap(speakers);
    Matrix matrix(speakers.size(), std::vector<double>(componentCount(order), 0.0));
    for (const Direction& direction : fibonacci(virtualDirections)) {
        const std::vector<double> row = rows.row(direction, 1.0 / virtualDirections);
        const std::vector<double> gains = vbap.gains(direction.unitVector());
        for (size_t s = 0; s < speakers.size(); ++s) {
            if (gains[s] == 0) { continue; }
            for (size_t k = 0; k < row.size(); ++k) { matrix[s][k] += gains[s] * row[k]; }
        }
    }
    return energyNormalized(std::move(matrix), order);
}

Matrix energyNormalized(Matrix matrix, int order) {
    double energy = 0;
    for (const Direction& direction : fibonacci(energyDirections)) {
        const std::vector<double> y = sh(order, direction.unitVector());
        for (const std::vector<double>& row : matrix) {
            const double output = std::inner_product(row.begin(), row.end(), y.begin(), 0.0);
            energy += output * output;
        }
    }
    energy /= energyDirections;
    if (energy > 0) {
        const double scale = 1 / std::sqrt(energy);
        for (std::vector<double>& row : matrix) {
            for (double& entry : row) { entry *= scale; }
        }
    }
    return matrix;
}

}  // namespace brindlehum::Ambisonics
