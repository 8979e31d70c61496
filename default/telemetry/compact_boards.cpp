// Boards of the other lidars of the base pipeline.
#include "default/telemetry/board_cells.h"
#include "default/telemetry/monitor_boards.h"

namespace tarvo::skarnvisor {

using namespace cells;

namespace boards {

const MonitorTable &boardD() {
  static const MonitorTable table(
      {number(0, "Temp_RX(1%1)", 0.1F), number(2, "Temp_TMB(1%1)", 0.1F), number(3, "Temp_TX(1%1)", 0.1F),
       number(7, "Temp_TMB1(1%1)", 0.1F), number(9, "Temp_TMB_FPGA(1%1)", 0.1F), number(17, "TMB_2V5(1V)", 0.01F),
       number(18, "TMB_3V3(1V)", 0.01F), number(19, "TMB_1V8(1V)", 0.01F), number(21, "TMB_12V(1V)", 0.01F),
       number(26, "HV_RXNHV(1V)", 0.01F), number(27, "HV_TXHV(1V)", 0.01F), text(40, 43, "upParasha"),
       number(45, "TMB_5V(1V)", 0.01F), number(46, "TMB_8V(1V)", 0.01F), text(57, 60, "Top_FW")});
  return table;
}

const MonitorTable &bottomBoardD() {
  static const MonitorTable table(
      {number(0, "fpga_temp(1%1)", 0.1F), number(1, "BMB_1V2(1V)", 0.01F), number(3, "BMB_3V3(1V)", 0.01F),
       number(4, "WPT(1A)", 0.1F), number(5, "MCU(1%1)", 0.1F), number(6, "BMB(1%1)", 0.1F),
       number(7, "BMB_VIN(1V)", 0.1F), number(16, "BMB_1V25(1V)", 0.01F), number(18, "BMB_14V(1V)", 0.01F),
       text(20, 27, "Down_FW"), text(28, 35, "SW_VERSION"), integer(36, "crc_err_cnt"), integer(38, "PTP_STATUS"),
       integer(43, "HW_VERSION")});
  return table;
}

const MonitorTable &boardE() {
  static const MonitorTable table({number(0, "motor speed(rpm)", 0.1F), number(1, "U_BMB_PWR(V)", 0.01F),
                                   number(2, "T_BMB_IMU(1%1)", 0.01F), number(3, "I_BMB_WLP(A)", 0.01F),
                                   number(4, "U_TMB_P1V2(V)", 0.00080566F), number(5, "U_TMB_P14V0(V)", 0.0088623F),
                                   number(6, "U_TXHV(V)", 0.0128906F), number(7, "U_RXNHV(V)", 0.0169189F, -66.0F),
                                   thermistor(8, "T_TRX(1%1)"), thermistor(9, "T_TMB(1%1)"), number(10, "ERR_CNT_UP"),
                                   number(11, "ERR_CNT_DOWN"), text(12, 15, "MCU_VER"), text(16, 18, "FPGA_VER"),
                                   text(19, 20, "FPGA_CFG_SHA"), text(21, 22, "DIST_UINT(mm)")});
  return table;
}

const MonitorTable &boardF() {
  static const MonitorTable table({integer(0, "Motor Speed"),
                                   integer(1, "U_BMB_PWR"),
                                   integer(2, "T_BMB_IMU"),
                                   integer(3, "I_BMB_WLP"),
                                   integer(4, "U_TMB_P1V2"),
                                   integer(5, "U_TMB_P14V0"),
                                   integer(6, "U_TXHV"),
                                   integer(7, "U_RXNHV"),
                                   integer(8, "T_TRX"),
                                   integer(9, "T_TMB"),
                                   integer(10, "SN_CODE"),
                                   integer(11, "ERR_CNT_DOWN"),
                                   text(12, 15, "MCU_VER"),
                                   text(16, 19, "FPGA_VER"),
                                   wide(20, 21, "FPGA_CFG_CRC"),
                                   integer(22, "T_MCU"),
                                   integer(23, "DIAG_FuSa"),
                                   integer(24, "DIAG_EySa"),
                                   integer(25, "T_TMB_margin"),
                                   integer(26, "T_BMB_margin"),
                                   integer(27, "T_TRX_margin"),
                                   integer(28, "IMU_acceleration_unit"),
                                   integer(29, "IMU_angular_velocity_unit"),
                                   integer(30, "U_BMB_FPGA"),
                                   text(31, 34, "BMB_FPGA_VER")});
  return table;
}

const MonitorTable &boardG() {
  static const MonitorTable table({number(0, "Temp_RFB_1(0.1%1)"),
                                   number(1, "Temp_FPGA(0.1%1)"),
                                   number(2, "Temp_PMIC(0.1%1)"),
                                   number(3, "Temp_TX_1(0.1%1)"),
                                   number(4, "TempA_TX_2(0.1%1)"),
                                   number(5, "TX_ADC(V)"),
                                   number(6, "TempA_RX(0.1%1)"),
                                   number(7, "SiPM_ADC(V)"),
                                   number(8, "Vbias_ADC(V)"),
                                   number(9, "Temp_FPGA(0.1%1)"),
                                   number(10, "Temp_FPGA_XADC(0.1%1)"),
                                   number(11, "BuckBoost_1(A)"),
                                   number(12, "BuckBoost_2(V)"),
                                   number(13, "CRC_1"),
                                   number(14, "CRC_2"),
                                   number(15, "CRC_3"),
                                   number(16, "Total_1"),
                                   number(17, "Total_2"),
                                   number(18, "Total_3"),
                                   number(19, "U_TMB_4(1mV)"),
                                   number(20, "U_TMB_5(1mV)"),
                                   number(21, "U_TMB_6(1mV)"),
                                   number(22, "U_TMB_FPGA_1(1mV)"),
                                   number(23, "U_TMB_FPGA_2(1mV)"),
                                   number(24, "U_TMB_FPGA_3(1mV)"),
                                   number(25, "U_TMB_FPGA_4(1mV)"),
                                   number(26, "HV_out(0.1V)"),
                                   number(27, "HV_apd(0.1V)"),
                                   text(28, 31, "Top_SW"),
                                   text(32, 35, "Top_FW"),
                                   text(36, 39, "Top_code_sha"),
                                   text(40, 43, "Parasha"),
                                   number(44, "TempA_WPR(0.1%1)"),
                                   number(45, "U_TMB_VCCINT(1V)"),
                                   number(46, "U_TMB_P3V8A(1V)"),
                                   number(47, "U_TMB_P2V5A(1V)"),
                                   number(48, "U_TMB_15V_LBB(1V)"),
                                   number(49, "U_TMB_N2V5_Driver(1V)"),
                                   number(50, "U_TMB_P3V35_RBB(1V)"),
                                   number(51, "U_TMB_N5V_RBB(1V)"),
                                   number(52, "U_TMB_N1V2A(1V)"),
                                   number(53, "Temp_RBB_1(0.1%1)"),
                                   number(54, "TempA_PD(0.1%1)"),
                                   number(55, "U_TMB_P1V2D(1V)"),
                                   number(56, "U_TMB_LBB5V_ADJ(1V)")});
  return table;
}

const MonitorTable &boardH() {
  static const MonitorTable table({number(0, "Temp_TX_AVE(%1)", 0.01F),
                                   number(1, "Temp_TMB_FPGA(%1)", 0.01F),
                                   number(2, "Temp_TMB_PMIC(%1)", 0.01F),
                                   number(3, "U_TMB_IN_12V(V)", 0.01F),
                                   number(4, "Temp_TX_1(%1)", 0.01F),
                                   number(5, "Temp_TX_2(%1)", 0.01F),
                                   number(6, "Temp_RX_2(%1)", 0.01F),
                                   number(7, "Temp_RX_AVG(%1)", 0.01F),
                                   number(8, "U_TXHV_16V(V)", 0.01F),
                                   number(9, "U_TXHV_5V(V)", 0.01F),
                                   number(10, "Temp_RX_1(%1)", 0.01F),
                                   number(11, "U_Vbias_34V(V)", 0.01F),
                                   number(12, "Temp_BMB_FPGA(%1)", 0.01F),
                                   number(13, "Temp_BMB_BUCKBOOST(%1)", 0.01F),
                                   number(14, "I_BMB_BUCKBOOST_OUT(V)", 0.01F),
                                   number(15, "U_BMB_BUCKBOOST_OUT(A)", 0.01F),
                                   number(16, "U_IN(V)", 0.01F),
                                   number(17, "Temp_WCD(%1)", 0.01F),
                                   wide(18, 20, "CRC_Error_COUNT"),
                                   wide(21, 23, "TOTAL_PKT_COUNT")});
  return table;
}

}  // namespace boards

}  // namespace tarvo::skarnvisor
