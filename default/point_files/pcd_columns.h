#pragma once

#include <QVector>

#include "default/models/settings_value.h"
#include "default/models/specific_table_model.h"
#include "default/point_files/pcd_frame_store.h"

namespace tarvo::skarnvisor {

/// The columns of the point table over the points of `store`. Both arguments outlive the records. A cell takes the
/// store's lock for the moment of its reading; the two orders and the texts get point indices and are called under it.
[[nodiscard]] QVector<ColumnRecord> pcdColumns(const PcdFrameStore &store, const Relaxed<int> &decimals);

}  // namespace tarvo::skarnvisor
