// Everything that ends the process: the line that says why, and the assertion.
#include "MockManager.h"
#include "TestPlatform.h"
#include "ZoomOverrideByRequest.h"
#include "ZoomOverrideExternalAPI.h"
#include "ZoomOverrideInstantRequest.h"
#include "ZoomOverrideMgr.h"

namespace NSCam::Feature {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::NiceMock;
using testing::Not;
using Utils::ULog::ULogger;
using Mode = ZoomOverrideMode;
using MgrPtr = std::shared_ptr<IZoomOverrideMgr>;

/// Who ends the process.
struct Where {
    std::string className;
    std::string function;
    std::string file = {};  ///< where it is not the class's own

    std::string prefix() const { return "[" + className + "::" + function + "] "; }
    std::string path() const {
        auto const own = className == "ZoomOverrideMgr" ? className : "ZoomOverride" + className;
        return "feature/common/zoomoverride/" + (file.empty() ? own : file) + ".cpp";
    }
};

class FatalDeathTest : public PlatformTest {
 protected:
    FatalDeathTest() { setSensor(0, {4000, 3000}, std::nullopt); }

    /// A line in the debug print, then a bare assertion.
    template <typename Run>
    static void expectFatalLine(Where const& where, std::string const& message, Run run) {
        SCOPED_TRACE(where.prefix());
        EXPECT_DEATH(
            run(),
            AllOf(HasSubstr("[E][qvxcam-ZoomOverrideMgr] " + where.path() + ":"),
                  HasSubstr(" " + where.function + "() [Fatal] " + where.prefix() + message + "\n"),
                  HasSubstr("(" + where.function + "){#"), HasSubstr(":" + where.path() + "}")));
    }

    /// An assertion that carries the message itself.
    template <typename Run>
    static void expectAbort(Where const& where, std::string const& message, Run run) {
        SCOPED_TRACE(where.prefix());
        EXPECT_DEATH(run(),
                     AllOf(HasSubstr(where.prefix() + message + " (" + where.function + "){#"),
                           HasSubstr(":" + where.path() + "}"), Not(HasSubstr("[Fatal]"))));
    }

    /// A manager that forgets every request; the real one ends the process itself.
    MgrPtr const mForgetful = std::make_shared<NiceMock<MockManager>>();
    MgrPtr const mMgr = IZoomOverrideMgr::getInstance();
    ZoomOverrideRequest mRequest{5, 2.0F, 0};
    ZoomOverrideP1Need mP1;
    ZoomOverrideP2Need mP2;
    ZoomOverride3ANeed m3A;
};

TEST_F(FatalDeathTest, Manager) {
    Where const deposits{"ZoomOverrideMgr", "setRunTimeCropNeedData"};
    Where const looksUp{"ZoomOverrideMgr", "getHistoryCropNeedData"};
    Where const corrects{"ZoomOverrideMgr", "correctTgCropRegion"};
    auto const noRecord = "null previous runtime data, may be OverrideNotice get wrong?";
    expectFatalLine(deposits, noRecord, [] {
        ZoomOverrideMgr().setRunTimeCropNeedData(6, OverrideNotice::Repeating, {});
    });
    deposit(*mMgr, 5, {});
    expectFatalLine(deposits, noRecord, [this] {
        mMgr->initialize(Mode::InstantRequest);
        mMgr->setRunTimeCropNeedData(6, OverrideNotice::Repeating, {});
    });
    expectFatalLine(corrects, "CamsysSensorInfoHelper not found", [] {
        Host::enableSensorInfo(false);
        MRect crop;
        ZoomOverrideMgr().correctTgCropRegion(0, 2, false, {}, crop);
    });
    expectFatalLine(looksUp, "req(-3) not exist", [this] { mMgr->getHistoryCropNeedData(-3); });
    mMgr->onRequestDone(5);
    expectFatalLine(looksUp, "req(5) not exist", [this] { mMgr->getHistoryCropNeedData(5); });
    MRect crop;
    expectFatalLine(corrects,
                    "CamsysSensorInfoHelper getSensorSize Failed sensorId 0 ,sensorMode 9",
                    [&] { mMgr->correctTgCropRegion(0, 9, false, {}, crop); });
}

TEST_F(FatalDeathTest, TrapsOfTheBase) {
    std::string const text = "[Zoom Override] no Implement please check ZoomOverrideMode";
    ZoomOverrideBase base;
    ZoomOverrideInstantRequest instant(mMgr, 0);
    ZoomOverrideByRequest byRequest(mMgr, 0);
    ZoomOverrideExternalAPI externalApi(mMgr, 0);
    auto const traps = [](char const* function) { return Where{"Base", function}; };
    expectFatalLine(traps("configFspInfo"), text, [&] { instant.configFspInfo({}); });
    expectFatalLine(traps("configSensorInfo"), text, [&] { byRequest.configSensorInfo({}); });
    expectFatalLine(traps("getP1CropSetting"), text, [&] { base.getP1CropSetting({}, mP1); });
    expectFatalLine(traps("getP2CropSetting"), text,
                    [&] { instant.getP2CropSetting({}, mP2, true); });
    expectFatalLine(traps("get3ACropSetting"), text, [&] { instant.get3ACropSetting({}, m3A); });
    expectFatalLine(traps("get3ACropSetting"), text,
                    [&] { externalApi.get3ACropSetting({}, m3A); });
    expectFatalLine(traps("onRequestDone"), text, [&] { base.onRequestDone(1); });
    expectFatalLine(traps("getZoomOverrideMode"), text, [&] { base.getZoomOverrideMode(); });
    expectFatalLine(traps("storeOverrideSetting"), text + ", this only IntantRequestMethod",
                    [&] { byRequest.storeOverrideSetting(nullptr, {}); });
    expectFatalLine(traps("storeOverrideSetting"), text + ",thisonly by ByRequestMethod",
                    [&] { instant.storeOverrideSetting(1, OverrideNotice::Default, nullptr); });
}

TEST_F(FatalDeathTest, InstantRequest) {
    Where const stores{"InstantRequest", "storeOverrideSetting"};
    Where const asks{"InstantRequest", "getP1CropSetting"};
    auto const query = [&](MgrPtr mgr) {
        ZoomOverrideInstantRequest strategy(mgr, 0);
        mgr.reset();  // strategies do not keep their manager alive
        auto const metadata = makeMetadata(1.0F, {10, 1, 2, 30, 40});
        strategy.storeOverrideSetting(&metadata, {{10, kPreview}});
        strategy.getP1CropSetting(mRequest, mP1);
    };
    IMetadata const empty;
    expectFatalLine(stores, "[Zoom Override] QVX_CONTROL_ZOOM_RATIO not found!", [&] {
        mMgr->initialize(Mode::InstantRequest);
        mMgr->storeOverrideSetting(&empty, {});
    });
    expectFatalLine(asks, "ZoomOverride Tools nullptr",
                    [&] { query(std::make_shared<ZoomOverrideMgr>()); });
    Where const contextOf{"InstantRequest", "getP1CropSetting", "QueryContext"};
    expectAbort(contextOf, "[Zoom Override] no history of req(5)", [&] { query(mForgetful); });
    deposit(*mMgr, 5, {{{0, 2}}, {}, {}, {}});
    expectFatalLine(asks, "getMatrixFromActive fail", [&] { query(mMgr); });
}

TEST_F(FatalDeathTest, ByRequest) {
    Where const stores{"ByRequest", "storeOverrideSetting"};
    Where const asksP1{"ByRequest", "getP1CropSetting"};
    Where const asksP2{"ByRequest", "getP2CropSetting"};
    Where const asks3A{"ByRequest", "get3ACropSetting"};
    auto const nothingKept = "Repeating hint but theoverrideSetting are not store any data";
    auto const setting = std::make_shared<ZoomOverrideSetting>();
    setting->overrideValid = true;
    setting->requestNo = 20;
    setting->previewAaCrops[0] = {};
    auto const query = [&](MgrPtr mgr) {
        ZoomOverrideByRequest strategy(mgr, 0);
        mgr.reset();
        strategy.storeOverrideSetting(20, OverrideNotice::Default, setting);
        strategy.getP2CropSetting(mRequest, mP2, true);
    };
    ZoomOverrideByRequest fresh(mMgr, 0);
    auto const repeat = [&] { fresh.storeOverrideSetting(1, OverrideNotice::Repeating, setting); };
    expectAbort(stores, nothingKept, repeat);
    fresh.storeOverrideSetting(1, OverrideNotice::Default, setting);
    fresh.storeOverrideSetting(2, OverrideNotice::Default, nullptr);
    expectAbort(stores, nothingKept, repeat);
    expectAbort(asks3A, "[Zoom Override] By Request still not support 3A override", [this] {
        mMgr->initialize(Mode::ByRequest);
        mMgr->get3ACropSetting(mRequest, m3A);
    });
    expectAbort(asksP1, "[Zoom Override] no override setting is kept",
                [&] { fresh.getP1CropSetting(mRequest, mP1); });
    expectAbort(asksP2, "[Zoom Override] no override setting is kept",
                [&] { fresh.getP2CropSetting(mRequest, mP2, false); });
    Where const contextOf{"ByRequest", "getP2CropSetting", "QueryContext"};
    expectAbort(contextOf, "[Zoom Override] the manager is gone",
                [&] { query(std::make_shared<ZoomOverrideMgr>()); });
    expectAbort(contextOf, "[Zoom Override] no history of req(5)", [&] { query(mForgetful); });
    deposit(*mMgr, 5, {{{0, 2}}, {}, {}, {}});
    expectAbort(asksP2, "get Matrix error", [&] { query(mMgr); });
}

TEST_F(FatalDeathTest, ExternalApi) {
    auto const query = [&](MgrPtr mgr, bool p1) {
        ZoomOverrideExternalAPI strategy(mgr, 0);
        mgr.reset();
        strategy.configSensorInfo({{0}, {{0, std::make_shared<ZoomOverrideSensorInfo>()}}});
        p1 ? strategy.getP1CropSetting(mRequest, mP1)
           : strategy.getP2CropSetting(mRequest, mP2, true);
    };
    publish(1.0F, true);
    for (bool const p1 : {true, false}) {
        Where const updates{"ExternalAPI", p1 ? "updateSensorP1Crop" : "updateSensorP2Crop",
                            "QueryContext"};
        expectAbort(updates, "[Zoom Override] the manager is gone",
                    [&] { query(std::make_shared<ZoomOverrideMgr>(), p1); });
        expectAbort(updates, "[Zoom Override] no history of req(5)",
                    [&] { query(mForgetful, p1); });
        expectFatalLine({"ExternalAPI", p1 ? "getP1CropSetting" : "getP2CropSetting"},
                        "CustomZoomReader not found", [&] {
                            Host::enableContainerRegistry(false);
                            query(mMgr, p1);
                        });
    }
}

// The fatal line has one switch of its own and heeds no other; the abort has none.
TEST_F(FatalDeathTest, SwitchesSilenceLinesButNotTheEnd) {
    auto const end = [this] { mMgr->getHistoryCropNeedData(-3); };
    ULogger::sMode = 0;
    ULogger::sDetailsLevel = 0;
    ULogger::sNormalDetailsMask = 0;
    EXPECT_DEATH(end(), HasSubstr("[Fatal] [ZoomOverrideMgr::getHistoryCropNeedData] req(-3)"));
    Host::resetLogSwitches();
    Host::setPrintLevel(1, false);
    EXPECT_DEATH(end(), AllOf(Not(HasSubstr("[Fatal]")), HasSubstr("(getHistoryCropNeedData){#")));

    // The line of the other form ends with the message, its assertion goes on.
    auto const end3A = [this] { ZoomOverrideByRequest(mMgr, 0).get3ACropSetting(mRequest, m3A); };
    auto const line = HasSubstr("still not support 3A override\n");
    auto const assertion = HasSubstr("still not support 3A override (get3ACropSetting){#");
    ULogger::sDetailsLevel = 0;
    ULogger::sMode = 8;
    EXPECT_DEATH(end3A(), AllOf(line, assertion));
    ULogger::sMode = 5;
    EXPECT_DEATH(end3A(), AllOf(Not(line), assertion));
}

}  // namespace
}  // namespace NSCam::Feature
