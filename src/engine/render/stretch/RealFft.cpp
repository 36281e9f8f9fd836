#include "engine/render/stretch/RealFft.h"

#include <fftw3.h>

#include <mutex>

namespace qm {

namespace {

std::mutex& plannerMutex() {  // the library's planner is not safe across threads; its transforms are
    static std::mutex mutex;
    return mutex;
}

fftwf_complex* native(std::complex<float>* spectrum) {
    return reinterpret_cast<fftwf_complex*>(spectrum);
}

}  // namespace

// Estimated plans, because measured ones differ from start to start, and with them the last bit of the sound.
RealFft::RealFft(int size) : m_size(size) {
    AlignedVector<float> sound(static_cast<std::size_t>(size));
    AlignedVector<std::complex<float>> spectrum(static_cast<std::size_t>(bins()));
    const std::lock_guard lock(plannerMutex());
    m_forward = fftwf_plan_dft_r2c_1d(size, sound.data(), native(spectrum.data()), FFTW_ESTIMATE);
    m_inverse = fftwf_plan_dft_c2r_1d(size, native(spectrum.data()), sound.data(), FFTW_ESTIMATE);
}

RealFft::~RealFft() {
    const std::lock_guard lock(plannerMutex());
    fftwf_destroy_plan(m_forward);
    fftwf_destroy_plan(m_inverse);
}

void RealFft::forward(float* sound, std::complex<float>* spectrum) const {
    fftwf_execute_dft_r2c(m_forward, sound, native(spectrum));
}

void RealFft::inverse(std::complex<float>* spectrum, float* sound) const {
    fftwf_execute_dft_c2r(m_inverse, native(spectrum), sound);
}

}  // namespace qm
