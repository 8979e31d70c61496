#include "default/families/energy_deduct_files.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "libtarvo/UdpParser/energy_deduct_data_loaders.h"

namespace tarvo::skarnvisor {

using lidar::EnergyDeductParam;

void loadEnergyDeductFiles(const QString &dataRoot, lidar::DecodeParams &params) {
  const auto file = [&dataRoot](const char *name) {
    const QString path = dataRoot + QStringLiteral("/SkarnvisorDataFiles/energy_deduct/") + QLatin1String(name);
    return path.toLocal8Bit().toStdString();
  };
  EnergyDeductParam read;
  const bool coefficients = lidar::loadEnergyDistCoefCsv(file("dist_coef.csv"), read.distCoefficients);
  int rows = 0;
  int columns = 0;
  if (!lidar::loadEnergyKernelCsv(file("energy_kernel.csv"), rows, columns, read.kernel))
    lidar::defaultEnergyKernel(rows, columns, read.kernel);
  const std::string reflectivity = file("reflectivity_config.csv");
  if (!lidar::loadReflectivityFloatLut(reflectivity, read.floatLookup, read.floatLookupLoaded))
    lidar::loadReflectivityByteLut(reflectivity, read.byteLookup, read.byteLookupLoaded);

  params.write([&](lidar::FrameDecodeParam &target) {
    EnergyDeductParam &now = target.energyDeduct;
    if (coefficients) now.distCoefficients = std::move(read.distCoefficients);
    now.kernelRows = rows;
    now.kernelColumns = columns;
    now.kernel = std::move(read.kernel);
    std::copy(std::begin(read.floatLookup), std::end(read.floatLookup), now.floatLookup);
    std::copy(std::begin(read.byteLookup), std::end(read.byteLookup), now.byteLookup);
    now.floatLookupLoaded = read.floatLookupLoaded;
    now.byteLookupLoaded = read.byteLookupLoaded;
  });
}

}  // namespace tarvo::skarnvisor
