#pragma once

#include "net/tv_endpoint.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace quiv {

// The settings' keys of the endpointKey that was selected last, and of the name under which that TV
// announced itself.
inline constexpr char16_t SelectedDeviceKey[] = u"ombra.selectedDeviceKey";
inline constexpr char16_t SelectedServiceKey[] = u"ombra.selectedServiceName";

// The TV that all operations address.
class SelectedDevice : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    const std::optional<TVEndpoint>& device() const { return m_device; }
    bool isSelected() const { return m_device.has_value(); }
    QString name() const { return m_device ? m_device->name : QString(); }
    QString key() const { return m_device ? endpointKey(*m_device) : QString(); }
    // Returns nullopt if no TV is selected or its address is not valid.
    std::optional<QUrl> baseURL() const;

    // Takes the device over, also as a newer record of the same TV.
    void set(const TVEndpoint& device);

    // Remembers which TV was selected, to tell after an await whether it still is.
    class Guard {
    public:
        explicit Guard(const SelectedDevice& selected)
            : m_selected(&selected), m_generation(selected.m_generation) {}
        bool isCurrent() const { return m_selected->m_generation == m_generation; }

    private:
        const SelectedDevice* m_selected;
        std::uint64_t m_generation;
    };

Q_SIGNALS:
    void changed(); // the record, in any field

private:
    std::optional<TVEndpoint> m_device;
    std::uint64_t m_generation = 0; // counts the TVs selected
};

} // namespace quiv
