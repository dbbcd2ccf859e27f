// Every machine, subsystem and channel of the sample configuration, chosen as
// an operator would: each shows a live, labelled spectrum and no message.
#include <gtest/gtest.h>

#include "form_fixture.h"

namespace {

using viewer_test::FormFixture;

TEST(Walk, EveryChannelOfTheSampleShowsALiveLabelledSpectrum) {
    FormFixture f;
    viewer::SpectrumForm& form = f.Load();
    form.resize(1280, 800);
    form.show();
    const auto& cat = f.State().cat;
    ASSERT_GE(cat.MachineCount, 4);
    for (int16_t machine = 0; machine < cat.MachineCount; ++machine) {
        form.MenuMachine_Click(machine);
        for (int16_t sub = 0; sub < cat.SubsystemCount; ++sub) {
            form.MenuSubsystem_Click(sub);
            for (int position = 0; position < form.SpectrumCombo->count(); ++position) {
                form.SpectrumCombo->setCurrentIndex(position);
                form.SpectrumCombo_Click();
                f.Advance(2000);
                const std::string where = cat.MachineList[machine].Name + " / " +
                                          cat.SubsystemList[sub].Description + " / " +
                                          form.SpectrumCombo->currentText().toStdString();
                EXPECT_GT(f.State().LivePointCount, 0) << where;
                EXPECT_GE(cat.SpectrumTrace, 0) << where;
                EXPECT_FALSE(f.State().LiveLabels[0].empty()) << where;
            }
        }
    }
    EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{});
}

}  // namespace
