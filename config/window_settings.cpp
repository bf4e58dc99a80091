#include "config/window_settings.h"

#include "config/row_builder.h"

namespace vexa {
namespace {

constexpr auto kSame = Record::Same;
constexpr Range kPixels{100, 32767};
constexpr Range kCoordinates{-32768, 32767};
constexpr Range kDegrees{0, 360};

using System = SystemSettings;
using Named = NamedConfiguration;

constexpr SettingRow<System> kSystemRows[] = {
    Row<At<&System::Current>>("current configuration"),
    Row<At<&System::CaptionEnabled>>("caption enabled", kSame)
        .Named("Caption enabled")
        .Says("Names the active configuration in captions."),
    Row<At<&System::CaptionOnDiagram>>("caption on the diagram", kSame)
        .Named("Caption on the diagram")
        .Says("Writes the caption above the diagram, when captions are enabled."),
    Row<Nth<&System::Configurations, 0, &Named::Name>>("name of configuration 1")
        .Named("#1 name")
        .Says("Name of the first configuration, for its caption and the menu."),
    Row<Nth<&System::Configurations, 0, &Named::Description>>("description of configuration 1",
                                                              kSame)
        .Named("#1 description")
        .Says("What the first configuration is for."),
    Row<Nth<&System::Configurations, 1, &Named::Name>>("name of configuration 2")
        .Named("#2 name")
        .Says("Name of the second configuration, for its caption and the menu."),
    Row<Nth<&System::Configurations, 1, &Named::Description>>("description of configuration 2",
                                                              kSame)
        .Named("#2 description")
        .Says("What the second configuration is for."),
    Row<At<&System::LeastScreenWidth>, kTrue, Range{1, 32767}>("minimum screen width")
        .Named("Least screen width")
        .In("pixels")
        .Says("Screens narrower than this give a warning at start."),
    Row<At<&System::ScreenScale>, kTrue, Range{0.1, 10}>("screen scale factor", kSame),
};

using Window = MainWindowSettings;

constexpr SettingRow<Window> kWindowRows[] = {
    Row<At<&Window::Width>, kTrue, kPixels>("width"),
    Row<At<&Window::Height>, kTrue, kPixels>("height", kSame),
    Row<At<&Window::Left>, kTrue, kCoordinates>("left edge", kSame),
    Row<At<&Window::Top>, kTrue, kCoordinates>("top edge", kSame),
    Row<At<&Window::Maximized>>("maximized", kSame),
    Row<At<&Window::Cursor>>("cursor mode"),
    Row<At<&Window::InfoBox>>("information box", kSame),
    Row<At<&Window::Layout>>("layout"),
    Row<At<&Window::ImageFolder>>("image folder"),
    Row<Nth<&Window::RecentFiles, 0>>("recent file 1"),
    Row<Nth<&Window::RecentFiles, 1>>("recent file 2"),
    Row<Nth<&Window::RecentFiles, 2>>("recent file 3"),
    Row<Nth<&Window::RecentFiles, 3>>("recent file 4"),
    Row<Nth<&Window::RecentFiles, 4>>("recent file 5"),
};

using Hodo = HodographSettings;
using Front = FrontSettings;

template <auto Member>
constexpr auto kFront = At<&Hodo::Front, Member>;

constexpr SettingRow<Hodo> kHodographRows[] = {
    Row<At<&Hodo::Rings>>("ring scaling"),
    Row<At<&Hodo::RingLimit>, kTrue, Range{10, 500}>("ring limit", kSame),
    Row<At<&Hodo::Distance>>("distance unit", kSame).Named("Distances in"),
    Row<At<&Hodo::NoSMplot>>("storm vectors hidden"),
    Row<At<&Hodo::Float>>("floating panel", kSame),
    Row<At<&Hodo::Hold>>("held storm vector", kSame),
    Row<At<&Hodo::HelicityContours>>("helicity contours", kSame),
    Row<At<&Hodo::MbeVector>>("propagation vector", kSame),
    Row<At<&Hodo::Frame>>("frame of the winds"),
    Row<At<&Hodo::TableInverted>>("inverted wind table", kSame),
    Row<At<&Hodo::Compare>>("comparison traces", kSame),
    Row<kFront<&Front::Control>>("front control"),
    Row<kFront<&Front::Hold>>("held front", kSame),
    Row<kFront<&Front::Speed>>("front speed unit", kSame).Named("Frontal speed in"),
    Row<kFront<&Front::IntervalM>, kTrue, Range{100, 3000}>("thermal wind interval")
        .Named("Thermal wind interval")
        .In("m")
        .Says("Depth of the layers whose winds are compared."),
    Row<kFront<&Front::Mode>>("thermal wind mode", kSame)
        .Named("Thermal wind mode")
        .Says("How the layers follow each other."),
    Row<kFront<&Front::SlopeN>, kTrue, Range{20, 500}>("frontal slope")
        .Named("Frontal slope 1/")
        .When([](const Hodo& set) { return set.Front.Control == FrontControl::Manual; })
        .Says("Slope of the front while its control is manual."),
    Row<kFront<&Front::GradientThreshold>, kTrue, Range{0.005, 0.5}>("gradient threshold", kSame)
        .Named("Gradient threshold")
        .In("\xC2\xB0"
            "C/nm")
        .Says("Least gradient of a front."),
    Row<kFront<&Front::AngularThreshold>, kTrue, Range{5, 90}>("angular threshold", kSame)
        .Named("Angular threshold")
        .In("degrees")
        .Says("Most by which the thermal winds of a front differ."),
    Row<kFront<&Front::LowerLimitM>, kTrue, Range{0, 3000}>("lower frontal limit", kSame)
        .Named("Lower frontal limit")
        .In("m, AGL")
        .Says("Below it no front is searched."),
    Row<kFront<&Front::LeastAdvection>, kTrue, Range{0, 5}>("advection threshold", kSame)
        .Named("Advection threshold")
        .In("\xC2\xB0"
            "C/hr")
        .Says("Least advection of a front, warm or cold."),
    Row<At<&Hodo::SkipPlot>>("trace hidden"),
    Row<At<&Hodo::CaptionAtTop>>("captions above the plot", kSame),
};

using View3D = Hodogram3DSettings;

constexpr SettingRow<View3D> kHodogram3DRows[] = {
    Row<At<&View3D::Azimuth>, kTrue, kDegrees>("azimuth"),
    Row<At<&View3D::Tilt>, kTrue, Range{-90, 90}>("tilt", kSame),
    Row<At<&View3D::Step>, kTrue, Range{1, 45}>("step angle"),
    Row<At<&View3D::RotationMs>, kTrue, Range{10, 5000}>("rotation interval", kSame),
    Row<At<&View3D::Distance>>("distance unit"),
    Row<At<&View3D::NorthPointer>>("north pointer", kSame),
};

using Listing = ListingSettings;

constexpr SettingRow<Listing> kListingRows[] = {
    Row<At<&Listing::Page>>("listing"),
    Row<At<&Listing::IntervalM>, kTrue, Range{50, 5000}>("height interval", kSame),
    Row<At<&Listing::TopDown>>("top-down order", kSame),
    Row<At<&Listing::PrintDataType>>("data type printed"),
    Row<At<&Listing::PrintCoordinates>>("coordinates printed", kSame),
    Row<At<&Listing::PrintAll>>("all listings printed", kSame),
    Row<At<&Listing::Width>, kTrue, kPixels>("width"),
    Row<At<&Listing::Height>, kTrue, kPixels>("height", kSame),
};

using Soaring = SoaringSettings;

constexpr SettingRow<Soaring> kSoaringRows[] = {
    Row<At<&Soaring::Heights>>("height unit"),
    Row<At<&Soaring::Lift>>("lift unit", kSame),
    Row<At<&Soaring::Temp>>("temperature unit", kSame),
};

}  // namespace

std::span<const SettingRow<SystemSettings>> RowsOf(const SystemSettings&) {
  return kSystemRows;
}
std::span<const SettingRow<MainWindowSettings>> RowsOf(const MainWindowSettings&) {
  return kWindowRows;
}
std::span<const SettingRow<HodographSettings>> RowsOf(const HodographSettings&) {
  return kHodographRows;
}
std::span<const SettingRow<Hodogram3DSettings>> RowsOf(const Hodogram3DSettings&) {
  return kHodogram3DRows;
}
std::span<const SettingRow<ListingSettings>> RowsOf(const ListingSettings&) {
  return kListingRows;
}
std::span<const SettingRow<SoaringSettings>> RowsOf(const SoaringSettings&) {
  return kSoaringRows;
}

}  // namespace vexa
