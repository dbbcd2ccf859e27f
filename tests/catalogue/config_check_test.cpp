// The directory check over the sample configuration and a broken copy of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "catalogue/config_check.h"
#include "catalogue/files.h"
#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using namespace catalogue_test;

std::string Describe(const ConfigCheckResult& result) {
    std::string text;
    for (const auto& p : result.problems) text += p.file + ":" + std::to_string(p.line) + ": " + p.message + "\n";
    return text;
}

TEST(CheckConfigDirectory, SampleHasNoProblemsAndItsLinkSourceIsReadWhenALinkIsGiven) {
    std::vector<std::string> devices;
    ConfigCheckOptions options;
    options.thresholdLink = [&](const std::string& device, const std::string&, std::span<float>, int32_t) {
        devices.push_back(device);
        return int16_t{0};
    };
    for (const auto& result : {CheckConfigDirectory(LUMISCOPE_SAMPLE_CONFIG_DIR),
                               CheckConfigDirectory(LUMISCOPE_SAMPLE_CONFIG_DIR, options)}) {
        EXPECT_TRUE(result.problems.empty()) << Describe(result);
        EXPECT_GE(result.filesRead, 20);
    }
    EXPECT_EQ(devices, (std::vector<std::string>{"/ORKA/BLMSRV/LOSS.RING"}));
}

// A copy of the sample directory, in a folder named "configs" so that the
// threshold files ("configs\...") resolve as they do beside the program.
class BrokenCopy : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::copy(LUMISCOPE_SAMPLE_CONFIG_DIR, scratch_.Path("configs"),
                              std::filesystem::copy_options::recursive);
    }
    std::string Write(const std::string& name, const std::vector<std::string>& lines) {
        return scratch_.Write("configs/" + name, Lines(lines));
    }
    ConfigCheckResult Check() { return CheckConfigDirectory(scratch_.Path("configs")); }

    struct Expect { std::string file; int32_t line; std::string text; };

    // Each expected problem (file by its last path part, line, part of the
    // message) must be reported, each unexpected one must not.
    static void ExpectProblems(const ConfigCheckResult& result, const std::vector<Expect>& wanted,
                               const std::vector<Expect>& unwanted = {}) {
        auto has = [&](const Expect& e) {
            return std::any_of(result.problems.begin(), result.problems.end(), [&](const ConfigProblem& p) {
                return p.file.ends_with("/" + e.file) && p.line == e.line && p.message.find(e.text) != std::string::npos;
            });
        };
        for (const Expect& e : wanted) EXPECT_TRUE(has(e)) << e.file << ":" << e.line << " " << e.text << "\n" << Describe(result);
        for (const Expect& e : unwanted) EXPECT_FALSE(has(e)) << e.file << ":" << e.line << " " << e.text;
    }

    ScratchDir scratch_;
};

TEST_F(BrokenCopy, FindsEveryProblemOfRowsThresholdsListsHistoriesAndPropertyGroups) {
    Write("KALM_BPM.csv", {
        "CONTEXT,SERVER,PROPERTY,SIZE,DESCRIPTION,MAX,MIN,EGU,APPEND,HIGH,LOW,PROPLINK,EXTRAPROPCOMBOINDEX",
        "KALM,BPMSRV/LINE,POS.X,12,Head,2,-2,mm,REVERSE,,,1,-1",            // line 2: APPEND on row 1
        "KALM,BPMSRV/LINE,POS.Y,12,Part,3,-2,mm,yes,,,0,-1",                // 3: append refused
        "KALM,BPMSRV,POS.S,12abc,Sum,2,2,V,,a.csv,b.csv,1,9",               // 4: many
        "KALM,BPMSRV/LINE,POS.T,4001,Long,2,-2,mm,,,,1,-1",                 // 5: > 8000 points with 6
        "KALM,BPMSRV/LINE,POS.U,4000,Thr,2,-2,mm,yes,configs\\KALM_THR.csv,,1,-1",  // 6: HIGH lost to LOW
        "KALM,BPMSRV/LINE,POS.V,12,Link,2,-2,mm,,,/KALM/BAD[THR,1,-1",      // 7: bad link form
        "KALM,BPMSRV/LINE,POS.W,2,File,2,-2,mm,,,configs\\KALM_THR.csv,1,-1",  // 8: too many rows
        "KALM,BPMSRV/LINE,POS.Z,2,Gone,2,-2,mm,,,configs\\NONE.csv,1,-1",   // 9: missing file
        "KALM,BPMSRV/LINE,POS.H,2000000000,Huge,2,-2,mm,,,,1,-1",          // 10: no spectrum that long
    });
    Write("KALM_THR.csv", {"DEVICE,HIGH", ";x", "B1,5", "B2,oops"});
    Write("LYRAS_Subsystems.csv", {"FILENAME,DESCRIPTION", "LYRAS_BPM.csv,", "LYRAS_MISSING.csv,Missing"});
    Write("VESTA.HIST", {"PROPERTY,DESCRIPTION,MAX", "I,Current,x"});
    Write("KALM.HIST", Numbered({"PROPERTY,DESCRIPTION,HSTSERVER"}, 11, "P", ",D,/K/H"));

    const Texts head{"CONTEXT,SERVER,PROPERTY,SIZE,DESCRIPTION,MAX,MIN,EGU,PROPLINK,EXTRAPROPCOMBOINDEX",
                     "VESTA,PSSRV/D,CURRENT.SET,24,Soll,1,0,A,1,1",   // line 2
                     "VESTA,PSSRV/D,CURRENT.ACT,20,Ist,1,0,A,1,-1"};  // line 3
    Texts ps =
        Numbered(Numbered(head, 4, "VESTA,PSSRV/D,P", ",20,P,1,0,A,1,-1"), 5, "VESTA,PSSRV/Q,Q", ",20,Q,1,0,A,2,-1");
    ps.push_back("VESTA,PSSRV/Q,R,20,,1,0,A,3,-1");  // line 13; group 2 from line 8
    Write("VESTA_PS.csv", ps);
    Write("LYRAS_BPM.csv",
          Numbered({"CONTEXT,SERVER,PROPERTY,SIZE,DESCRIPTION,MAX,MIN,EGU"}, 6, "LYRAS,BPMSRV/L,P", ",4,B,1,0,mm"));
    Write("OPERATIONS_Subsystems.csv", {"FILENAME,DESCRIPTION", "ORKA_PS.csv,ORKA", "KALM_BPM.csv,KALM"});

    // Each property group is reported once, at its first head row; the
    // one-member group 3 and a channel without a companion are fine.
    ExpectProblems(Check(), {
        {"KALM_BPM.csv", 2, "APPEND 'REVERSE' is ignored on the first row"},
        {"KALM_BPM.csv", 3, "ignored: EGU, MAX or MIN differ"},
        {"KALM_BPM.csv", 4, "SIZE value '12abc' is not a number"},
        {"KALM_BPM.csv", 4, "MAX 2.000000 is not above MIN 2.000000"},
        {"KALM_BPM.csv", 4, "SERVER 'BPMSRV' names no device"},
        {"KALM_BPM.csv", 4, "LOW 'b.csv' replaces HIGH 'a.csv'"},
        {"KALM_BPM.csv", 4, "EXTRAPROPCOMBOINDEX 9 is past the chooser's last entry"},
        {"KALM_BPM.csv", 4, "threshold file 'b.csv' not found"},
        {"KALM_BPM.csv", 5, "has 8001 points"},
        {"KALM_BPM.csv", 6, "the empty LOW field replaces HIGH"},
        {"KALM_BPM.csv", 7, "is not of the form /CONTEXT/SERVER/DEVICE[PROPERTY]"},
        {"KALM_BPM.csv", 8, "Threshold array out of bounds !"},
        {"KALM_BPM.csv", 9, "threshold file 'configs\\NONE.csv' not found"},
        {"KALM_BPM.csv", 10, "not read: SIZE 2000000000 outside 0..8000"},
        {"KALM_THR.csv", 2, "comment mark not honoured"},
        {"KALM_THR.csv", 4, "HIGH value 'oops' is not a number"},
        {"LYRAS_Subsystems.csv", 2, "without a description"},
        {"LYRAS_Subsystems.csv", 3, "data-source file"},
        {"VESTA.HIST", 2, "MAX value 'x' is not a number"},
        {"VESTA.HIST", 2, "has neither a history server nor an archive"},
        {"KALM.HIST", 12, "only the first 10 quantities are read"},
        {"VESTA_PS.csv", 2, "companion 'Ist' has 20 elements, fewer than the 24 of this channel"},
        {"VESTA_PS.csv", 2, "PROPLINK 1 is shared by 6 entries: choosing 'Soll' fails"},
        {"VESTA_PS.csv", 8, "PROPLINK 2 is shared by 5 entries: only 4 get a check box"},
        {"VESTA_PS.csv", 13, "row without a description"},
        {"LYRAS_BPM.csv", 2, "PROPLINK -1 is shared by 6 entries"},
        {"OPERATIONS_Subsystems.csv", 3, "'KALM_BPM.csv' names none of ORKA, VESTA, LYRAS"},
    }, {{"VESTA_PS.csv", 3, "PROPLINK"}, {"VESTA_PS.csv", 13, "PROPLINK"}, {"VESTA_PS.csv", 3, "companion"},
        {"OPERATIONS_Subsystems.csv", 2, ""}});
}

TEST_F(BrokenCopy, HeaderProblemsAndReaderFailuresAndAMissingMachineList) {
    Write("KALM_BPM.csv", {",CONTEXT,SERVER", "KALM,BPMSRV/LINE"});
    Texts machines = Numbered({"MACHINE,CONFIGFILE,MACHINEFILE"}, 4, "M", ",KALM_Subsystems.csv,KALM.HIST");
    machines.push_back(",,");
    Write("config_machines.csv", machines);
    Write("KALM_Subsystems.csv", Numbered({"FILENAME,DESCRIPTION"}, 16, "KALM_BPM.csv,S"));

    ExpectProblems(Check(), {
        {"KALM_BPM.csv", 1, "column PROPERTY missing: the empty header field at position 0"},
        {"KALM_Subsystems.csv", 0,
         "Read Data Source Config File: KALM_Subsystems.csv failed ! (the subsystem menu has no entry 15"},
        {"config_machines.csv", 6, "machine without a name"},
        {"config_machines.csv", 6, "names no subsystem list"},
    });
    std::filesystem::remove(scratch_.Path("configs/config_machines.csv"));
    const auto result = Check();
    ASSERT_EQ(result.problems.size(), 1u) << Describe(result);
    EXPECT_NE(result.problems[0].message.find("cannot read the machine list"), std::string::npos);
}

}  // namespace
}  // namespace catalogue
