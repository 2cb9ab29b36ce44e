// Asks Soong what it makes of Android.bp: which files a device gets, where, built how and for which CPUs.
// scripts/check-android-bp.sh runs it.
package device

import (
	"os"
	"strings"
	"testing"

	"android/soong/android"
	"android/soong/cc"
)

// Where Android.bp says that this tree is expected.
const tree = "vendor/zoomoverride"

const arm64 = "android_vendor.30_arm64_armv8-a"
const arm = "android_vendor.30_arm_armv7-a-neon"

// What a device has beside this tree.
func deviceLibraries() string {
	bp := `
		cc_library { name: "liblog", vendor_available: true, nocrt: true }
		cc_library_static { name: "libgtest", vendor_available: true }
		cc_library_static { name: "libgtest_main", vendor_available: true }
		cc_library_static { name: "libgmock", vendor_available: true }
	`
	for _, name := range []string{".debugwrapper", "_camsys_sensor_utils", "_custom_feature", "_hwutils",
		"_metadata", "_modulehelper", "_stdutils", "_ulog"} {
		bp += `
		cc_library_shared { name: "libqvxcam` + name + `", vendor: true, nocrt: true }
		`
	}
	return bp
}

func askSoong(t *testing.T) *android.TestContext {
	text, err := os.ReadFile("../../Android.bp")
	if err != nil {
		t.Fatal(err)
	}
	files := []string{"Android.bp", tree + "/Android.bp"}
	config := cc.TestConfig(t.TempDir(), android.Android, nil, deviceLibraries(),
		map[string][]byte{files[1]: text})
	current, version := "current", "30"
	config.TestProductVariables.DeviceVndkVersion = &current
	config.TestProductVariables.Platform_vndk_version = &version

	ctx := cc.CreateTestContext()
	ctx.Register(config)
	_, errs := ctx.ParseFileList(".", files)
	android.FailIfErrored(t, errs)
	_, errs = ctx.PrepareBuildActions(config)
	android.FailIfErrored(t, errs)
	return ctx
}

func TestLibraries(t *testing.T) {
	ctx := askSoong(t)
	for _, name := range []string{"libcam.zoomoverridemgr", "libcam.zoomoverride_recorder"} {
		for folder, cpu := range map[string]string{"lib64": arm64, "lib": arm} {
			library := ctx.ModuleForTests(name, cpu+"_shared")

			installed := library.Module().FilesToInstall().Strings()
			file := "/vendor/" + folder + "/" + name + ".so"
			if len(installed) != 1 || !strings.HasSuffix(installed[0], file) {
				t.Errorf("%s: installed as %v, not as %s", name, installed, file)
			}
			if flags := library.Rule("ld").Args["ldFlags"]; !strings.Contains(flags, "--version-script,"+tree+"/") {
				t.Errorf("%s: exports all that it has: %s", name, flags)
			}
			flags := library.Module().VariablesForTests()
			for _, flag := range []string{"-std=c++20", "-fexceptions", "-frtti", "-ffp-contract=off",
				"-Werror", "-fmacro-prefix-map=" + tree + "/="} {
				if !strings.Contains(flags["cflags"]+" "+flags["cppflags"]+" ", flag+" ") {
					t.Errorf("%s: built without %s: %s", name, flag, flags)
				}
			}
		}
	}
}

func TestTests(t *testing.T) {
	installed := askSoong(t).ModuleForTests("libcam.zoomoverridemgr_tests", arm64).Module().FilesToInstall().Strings()
	file := "/data/nativetest64/vendor/libcam.zoomoverridemgr_tests/libcam.zoomoverridemgr_tests"
	if len(installed) != 1 || !strings.HasSuffix(installed[0], file) {
		t.Errorf("installed as %v, not as %s", installed, file)
	}
}
