#include "driver/loading_picture.h"

#include "driver/gl_helpers.h"
#include "driver/loading.h"
#include "driver/loading_picture_data.h"
#include "driver/packed_picture.h"
#include "image/image.h"
#include "image/upload.h"

void make_loading_picture() {
    Image* img = load_packed_picture(kLoadingPicture);
    g_loading_texture = image_upload(img, kTextureMipmapped);
    image_free(img);
    loading_step();
}
