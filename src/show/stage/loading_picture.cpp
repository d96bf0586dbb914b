#include "show/stage/loading_picture.h"

#include "show/image/image.h"
#include "show/image/upload.h"
#include "show/stage/loading_picture_data.h"
#include "show/stage/loading_screen.h"
#include "show/stage/packed_picture.h"

void make_loading_picture() {
    Image* img = load_packed_picture(kLoadingPicture);
    g_loading_texture = image_upload(img, kTextureMipmapped);
    image_free(img);
    loading_step();
}
