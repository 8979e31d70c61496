#pragma once

#include <cstdint>
#include <string>

namespace tarvo::lidar {

// The lidar itself, over its command connection. False or a negative code: not connected, or the device refused.
class DeviceRole {
 public:
  virtual ~DeviceRole() = default;
  // Starts connecting; the result is seen through IsAuxLcpOpen.
  virtual void OpenLcpConnection(const std::string &host, std::uint16_t port) = 0;
  virtual void CloseLcpConnection() = 0;
  [[nodiscard]] virtual bool IsLcpOpen() const = 0;
  [[nodiscard]] virtual bool IsAuxLcpOpen() const = 0;
  virtual int LcpSetReturnMode(int mode) = 0;  // 0: done
  virtual bool GetFpgaRegister(std::uint32_t address, std::uint32_t &value) = 0;
  virtual bool SetFpgaRegister(std::uint32_t address, std::uint32_t value) = 0;
  virtual bool SetLidarModeBySomeip(int mode) = 0;
  // False, and nothing written, when the lidar reports no status this way.
  virtual bool GetLidarStatusBySomeip(int &runMode, int &heatStatus) = 0;
};

}  // namespace tarvo::lidar
