#include <levels/AppliedCalibration.h>

#include <calibration/Validity.h>
#include <levels/ModuleObjects.h>
#include <levels/TargetParameters.h>

#include <tesk5/BadInput.h>

namespace levels {

namespace {

using tesk5::DiagModule;
using tesk5::Event;
using Use = AppliedCalibration::Use;

std::string textOf(const tesk5::Parameter* parameter) {
    return parameter->value().valueString().utf8();
}

Use raise(Event* event) {
    if (textOf(parameters::unusableCalibration) == "warn") {
        DiagModule::warning(event, __FILE__, __LINE__);
        return Use::WARNED;
    }
    DiagModule::error(event, __FILE__, __LINE__);
    return Use::REFUSED;
}

} // namespace

tesk5::Findings calibrationFindings() {
    tesk5::Findings findings;
    if (parameters::calibration->isSet()) {
        readStation(textOf(parameters::calibration));
        if (numberOr(parameters::offset, 0) != 0) {
            findings.push_back({"CHECK_OFFSET_TWICE", false, {}});
        }
    }
    return findings;
}

tesk5::InForce calibrationIn(const std::string& file) {
    const StationFile found = readStation(file);
    return {.name = found.station.name,
            .version = {},
            .sha256 = found.sha256,
            .source = tesk5::InForce::Source::file};
}

AppliedCalibration::AppliedCalibration() : m_path(textOf(parameters::calibration)) {
    if (m_path.empty()) {
        return;
    }
    try {
        m_file = readStation(m_path);
    } catch (const tesk5::BadInput& refused) { // it was changed since the parameters were checked
        throw tesk5::TeskException(tesk5::TeskString(refused.line));
    }
    const std::string station = textOf(parameters::station);
    m_isOtherStation = !station.empty() && station != m_file->station.name;
}

Use AppliedCalibration::checkStation() {
    return m_isOtherStation ? raise(events::calibrationOtherStation->setVariable("File", m_path)
                                        ->setVariable("Calibrated", m_file->station.name)
                                        ->setVariable("Station", textOf(parameters::station)))
                            : Use::CLEAN;
}

Use AppliedCalibration::checkRadio(const readings::Reading& reading) {
    if (!m_file || m_isOtherStation) {
        return Use::CLEAN;
    }
    const RadioCalibration* const radio = find(reading);
    if (radio == nullptr) {
        const std::optional<nativewifi::Band> band = nativewifi::bandOf(reading.mhz);
        return raise(events::calibrationForeign->setVariable("File", m_path)
                         ->setVariable("BSSID", readings::bssidText(reading.bssid))
                         ->setVariable("Band", band ? bandName(*band) : "?"));
    }
    if (calibration::validity(radio->date, radio->days, today()) == calibration::Validity::VALID) {
        return Use::CLEAN;
    }
    return raise(events::calibrationExpired->setVariable("File", m_path)
                     ->setVariable("From", dayText(radio->date))
                     ->setVariable("Expiry", dayText(radio->expiry())));
}

readings::Correction AppliedCalibration::correctionOf(const readings::Reading& reading) const {
    const RadioCalibration* const radio = find(reading);
    if (radio == nullptr) {
        return {};
    }
    const calibration::Offset offset = radio->offset();
    return {.offset = offset.value, .uncertainty = offset.expanded};
}

Event::Variables AppliedCalibration::attributes(const readings::Reading& reading) const {
    const RadioCalibration* const radio = find(reading);
    return radio == nullptr ? Event::Variables()
                            : Event::Variables{{"Calibration", m_path},
                                               {"CalibrationSHA256", m_file->sha256},
                                               {"CalibratedStation", m_file->station.name},
                                               {"CalibrationUnit", radio->unit},
                                               {"CalibrationDate", dayText(radio->date)}};
}

const RadioCalibration* AppliedCalibration::find(const readings::Reading& reading) const {
    return !m_file || m_isOtherStation
               ? nullptr
               : m_file->station.find(reading.bssid, nativewifi::bandOf(reading.mhz));
}

} // namespace levels
