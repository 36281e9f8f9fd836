#include "realtime/FakeCubeb.h"

namespace qm::test {

FakeCubeb fakeCubeb;

}  // namespace qm::test

using qm::test::fakeCubeb;

extern "C" {

int cubeb_init(cubeb** context, const char*, const char*) {
    *context = reinterpret_cast<cubeb*>(&fakeCubeb);
    return CUBEB_OK;
}
void cubeb_destroy(cubeb*) {}

int cubeb_get_min_latency(cubeb*, cubeb_stream_params*, uint32_t* frames) {
    *frames = 256;
    return CUBEB_OK;
}

int cubeb_stream_init(cubeb*, cubeb_stream** stream, const char*, cubeb_devid, cubeb_stream_params*, cubeb_devid,
                      cubeb_stream_params*, unsigned int, cubeb_data_callback data, cubeb_state_callback state,
                      void* user) {
    fakeCubeb = {data, state, user, 0};
    *stream = reinterpret_cast<cubeb_stream*>(&fakeCubeb);
    return CUBEB_OK;
}
void cubeb_stream_destroy(cubeb_stream*) {}
int cubeb_stream_start(cubeb_stream*) {
    return CUBEB_OK;
}
int cubeb_stream_stop(cubeb_stream*) {
    return CUBEB_OK;
}

int cubeb_stream_get_position(cubeb_stream*, uint64_t* position) {
    *position = fakeCubeb.position;
    return CUBEB_OK;
}
}
