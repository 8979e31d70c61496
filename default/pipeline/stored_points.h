#pragma once

#include "default/models/point_columns.h"
#include "default/models/specific_table_model.h"
#include "default/pipeline/frame_picture.h"

namespace tarvo::skarnvisor {

/// A column of the point table over the stored points of `picture`. Both arguments outlive the record.
/// A cell takes the picture's lock for the moment of its reading; the two orders get frame-store positions
/// and are called under it.
ColumnRecord makeColumn(const PointColumn &column, const FramePicture &picture, const Relaxed<int> &decimals);

}  // namespace tarvo::skarnvisor
