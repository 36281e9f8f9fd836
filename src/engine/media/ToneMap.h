// Pictures of high dynamic range or wide colours (ITU-R BT.2100 and BT.2020) as an ordinary screen shows them.
//
// Light above that of reference white is compressed by the curve of Report ITU-R BT.2390 (section 5.4, EETF), applied
// to the largest of the three components, so that colours keep their hue; what is darker than about half of it stays as
// it is. Colours are converted to BT.709 by the matrix of BT.2087, those outside of it are cut off, and the result is
// coded for the screen of BT.1886. A value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qm {

struct ToneSource {
    enum class Transfer { Gamma, Pq, Hlg };

    Transfer transfer = Transfer::Gamma;
    double peak = 1000;  // cd/m², of the brightest light in the film

    friend bool operator==(const ToneSource&, const ToneSource&) = default;
};

// R'G'B' of BT.2020 to R'G'B' of BT.709, all from 0 to 1.
std::array<double, 3> toneMapped(const ToneSource& source, const std::array<double, 3>& coded);

// The same from a table, for whole pictures.
class ToneTable {
public:
    explicit ToneTable(const ToneSource& source);

    const ToneSource& source() const { return m_source; }

    // From three 16-bit numbers a pixel to 0xffRRGGBB.
    void map(const std::uint16_t* from, std::uint32_t* to, std::size_t pixels) const;

private:
    using Node = std::array<float, 4>;

    ToneSource m_source;
    std::vector<Node> m_nodes;
};

}  // namespace qm
