// The discrete Fourier transform of real sound, in single precision. Plans are made when it is constructed, which may
// allocate and wait; transforming does neither. Blocks must come from AlignedVector.
#pragma once

#include <complex>
#include <cstddef>
#include <new>
#include <vector>

struct fftwf_plan_s;

namespace qm {

template <typename T>
struct AlignedAllocator {
    using value_type = T;
    static constexpr std::align_val_t kAlignment{64};

    AlignedAllocator() = default;
    template <typename U>
    explicit AlignedAllocator(const AlignedAllocator<U>&) {}
    T* allocate(std::size_t n) { return static_cast<T*>(::operator new(n * sizeof(T), kAlignment)); }
    void deallocate(T* p, std::size_t) { ::operator delete(p, kAlignment); }
    friend bool operator==(const AlignedAllocator&, const AlignedAllocator&) { return true; }
};

template <typename T>
using AlignedVector = std::vector<T, AlignedAllocator<T>>;

class RealFft {
public:
    explicit RealFft(int size);
    ~RealFft();
    RealFft(const RealFft&) = delete;
    RealFft& operator=(const RealFft&) = delete;

    int size() const { return m_size; }
    int bins() const { return m_size / 2 + 1; }

    void forward(float* sound, std::complex<float>* spectrum) const;
    void inverse(std::complex<float>* spectrum, float* sound) const;  // times size(); spoils `spectrum`

private:
    const int m_size;
    fftwf_plan_s* m_forward;
    fftwf_plan_s* m_inverse;
};

}  // namespace qm
