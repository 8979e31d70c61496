// Boards of the turning lidars.
#include "default/telemetry/board_cells.h"
#include "default/telemetry/monitor_boards.h"

namespace tarvo::skarnvisor {

using namespace cells;

namespace {

const Board &cellsOfA() {
  static const Board board{number(0, "Temp_RFB_1(0.1%1)"),
                           number(1, "Temp_RFB_2(0.1%1)"),
                           number(2, "Temp_TMB_1(0.1%1)"),
                           number(3, "TempA_CB_3(0.1%1)"),
                           number(4, "TempA_CB_5(0.1%1)"),
                           number(5, "TempA_RFB_1(0.1%1)"),
                           number(6, "TempA_RFB_2(0.1%1)"),
                           number(7, "TempA_TMB_1(0.1%1)"),
                           number(8, "Temp_WCT(0.1%1)"),
                           number(9, "Temp_TMB_FPGA(0.1%1)"),
                           number(10, "I_TMB_1(1mA)"),
                           number(11, "I_TMB_2(1mA)"),
                           number(12, "I_TMB_3(1mA)"),
                           number(13, "I_TMB_4(1mA)"),
                           number(14, "I_TMB_5(1mA)"),
                           number(15, "I_TMB_6(1mA)"),
                           number(16, "U_TMB_1(1mV)"),
                           number(17, "U_TMB_2(1mV)"),
                           number(18, "U_TMB_3(1mV)"),
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
                           number(53, "Temp_RBB_D(0.1%1)"),
                           number(54, "TempA_PD(0.1%1)"),
                           number(55, "U_TMB_P1V2D(1V)"),
                           number(56, "U_TMB_LBB5V_ADJ(1V)"),
                           text(57, 64, "Top_FW"),
                           number(65, "TempD_LBB_1(0.1%1)"),
                           number(66, "TempD_CB_2(0.1%1)"),
                           number(67, "TempD_CB_3(0.1%1)"),
                           number(68, "VREF_HIGH_TH_1V8(1V)")};
  return board;
}

const Board &cellsOfBottomC() {
  static const Board board{
      number(0, "Temp_BMB_ZYNQ(0.1%1)"),  number(1, "U_BMB_5V(0.1V)"),   number(2, "I_BMB_5V(1mA)"),
      number(3, "U_WPT_12V(0.1V)"),       number(4, "I_WPT_12V(1mA)"),   number(5, "Temp_WCR(0.1%1)"),
      number(6, "Temp_BMB(0.1%1)"),       number(7, "U_BPB_12V(0.01V)"), number(8, "I_BPB_12V(1mA)"),
      number(9, "Power_LiDAR(0.01W)"),    text(10, 13, "Bottom_FW"),     number(14, "Humidity(0.1%RH)"),
      number(15, "Humidity_Temp(0.1%1)"), number(16, "U_MOTOR(0.1V)"),   number(17, "I_MOTOR(1mA)"),
      number(18, "U_BMB_12V(0.1V)"),      number(19, "I_BMB_12V(1mA)"),  text(20, 27, "Bottom_FW"),
      text(28, 35, "Bottom_SW")};
  return board;
}

const Board &serialNumbers() {
  static const Board board{text(224, 239, "Lidar_SN"), text(240, 255, "Lidar_PN")};
  return board;
}

const Board &cellsOfB1() {
  static const Board board{number(0, "Temp_TMB_FPGA(0.1%1)"),
                           number(1, "Temp_RX1(0.1%1)"),
                           number(2, "Temp_RX2(0.1%1)"),
                           number(3, "Temp_TX1(0.1%1)"),
                           number(4, "Temp_TX2(0.1%1)"),
                           number(5, "Temp_WCT(0.1%1)"),
                           number(6, "Temp_TMB1(0.1%1)"),
                           number(7, "Temp_TMB2(0.1%1)"),
                           number(8, "fpga_vccint(0.1V)"),
                           number(9, "fpga_vccaux(0.1V)"),
                           number(10, "laser_v_h(0.1V)"),
                           number(11, "laser_v_l(0.1V)"),
                           number(12, "sipm_v(0.1V)"),
                           number(13, "ref_1v25(0.1V)"),
                           number(14, "ref_12v(0.1V)"),
                           number(15, "tx_safe_v(0.1V)"),
                           number(16, "ref_1v(0.1V)"),
                           number(17, "ref_1v2(0.1V)"),
                           number(18, "ref_1v8(0.1V)"),
                           number(19, "ref_3v3(0.1V)"),
                           number(20, "ref_5v(0.1V)"),
                           number(21, "ref_2v5(0.1V)"),
                           number(22, "ref_3v(0.1V)"),
                           number(23, "rx_12v(0.1V)"),
                           integer(28, "Unkown"),
                           integer(29, "Unkown"),
                           integer(30, "Unkown"),
                           integer(31, "Unkown"),
                           integer(32, "Unkown"),
                           integer(33, "Unkown"),
                           integer(34, "Unkown"),
                           integer(35, "Unkown"),
                           text(36, 39, "Top_code_sha"),
                           text(40, 43, "Parasha")};
  return board;
}

const Board &cellsOfBottomB1() {
  static const Board board{number(0, "fpga_temp(0.1%1)"),  number(1, "motor_temp(0.1%1)"),
                           number(2, "bmb_temp(0.1%1)"),   number(3, "vcc_in(0.1V)"),
                           number(4, "wcr_temp(0.1%1)"),   number(5, "VCC_MOTOR_BUS(0.1V)"),
                           number(6, "input_current(1mA)")};
  return board;
}

}  // namespace

namespace boards {

const MonitorTable &boardA() {
  static const MonitorTable table(cellsOfA());
  return table;
}

const MonitorTable &bottomBoardA() {
  static const MonitorTable table(with(cellsOfBottomC(), serialNumbers()));
  return table;
}

const MonitorTable &errorRate() {
  static const MonitorTable table({number(0, "error_code_rate")});
  return table;
}

const MonitorTable &boardB1() {
  static const MonitorTable table(cellsOfB1());
  return table;
}

const MonitorTable &bottomBoardB1() {
  static const MonitorTable table(with(cellsOfBottomB1(), serialNumbers()));
  return table;
}

const MonitorTable &boardB2() {
  static const MonitorTable table(without(without(without(without(cellsOfB1(), 13, 13), 18, 19), 21, 22), 28, 35));
  return table;
}

const MonitorTable &bottomBoardB2() {
  static const MonitorTable table(with(with(cellsOfBottomB1(), {number(7, "humidity(0.1%RH)")}), serialNumbers()));
  return table;
}

const MonitorTable &boardB3() {
  static const MonitorTable table(without(without(without(cellsOfB1(), 13, 13), 21, 22), 28, 35));
  return table;
}

const MonitorTable &bottomBoardB3() {
  static const MonitorTable table(
      with({number(0, "fpga_temp(0.1%1)"), number(1, "ANALOG_BMB_NTC1(0.1%1)"), number(2, "ANALOG_BMB_NTC2(0.1%1)"),
            number(3, "POWER_IN_MON(0.1V)"), number(4, "MOTOR_CURENT(1mA)"), number(5, "MOTOR_BUS_MON(0.1V)"),
            number(6, "PWRIN_CUR(1mA)"), number(7, "humidity(0.1%RH)"), number(8, "MCU_TEMP(0.1%1)"),
            number(9, "PHY_TEMP(0.1%1)"), number(14, "PID_RESULT")},
           serialNumbers()));
  return table;
}

const MonitorTable &boardC() {
  static const MonitorTable table(with(
      cellsOfA(), {text(128, 128, "Corr_Para_Sha1"), text(129, 129, "Corr_Para_Sha2"), text(130, 130, "Corr_Para_Sha3"),
                   text(131, 131, "Corr_Para_Sha4"), number(132, "Temp_TMB1(0.1%1)"), number(133, "Laser_HV(0.1V)"),
                   number(134, "Voltage_TP(0.1V)")}));
  return table;
}

const MonitorTable &bottomBoardC() {
  static const MonitorTable table(cellsOfBottomC());
  return table;
}

}  // namespace boards

}  // namespace tarvo::skarnvisor
