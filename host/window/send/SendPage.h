// SPDX-License-Identifier: MIT
// SendPage: the ticked records, what would become of each on the receiver, and the button that
// sends them. Made anew whenever records, ticks or receiver change while the page is seen. [main
// loop]

#pragma once

#include "host/records/RecordTicks.h"
#include "host/window/send/SendModel.h"
#include "host/window/send/SendWork.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include <adwaita.h>
#include <gtkmm.h>

namespace host {

class SendPage : public Gtk::Box {
public:
    struct Handlers {
        std::function<void(const SendChoice& choice)> preview;
        std::function<void(const SendChoice& choice, const SendPreview& seen)> send;
    };

    explicit SendPage(Handlers handlers);

    /// Lists the ticked records. Nothing changes if they are the same as before.
    void setRecords(std::shared_ptr<const RecordSet> records, const TickedRecords& ticked);

    /// @param name      of the selected receiver; empty: there is none
    /// @param location  identifies it
    void setReceiver(const std::string& name, const std::string& location);

    /// Shows the answer to the last request for a preview; the answers to others must not be shown.
    void setPreview(SendPreview preview);

    /// Shows that a transfer has begun or ended. After one, the receiver may be another.
    void setBusy(bool isBusy);

private:
    [[nodiscard]] Gtk::Widget* recordView();
    [[nodiscard]] Gtk::Widget* planView();
    [[nodiscard]] Gtk::Widget* actionBar();
    void bindRecord(Gtk::ListItem& row);
    void bindLine(Gtk::ListItem& row) const;
    [[nodiscard]] bool arrangeSome();
    void fill(Gtk::ListItem& row);
    void tick(RecordKind kind, std::size_t index, bool isTicked);
    void refresh();
    void requestPreview();
    void showState();
    [[nodiscard]] std::string noteOn(RecordKind kind, std::size_t index) const;

    Handlers handlers_;
    SendChoice choice_{std::make_shared<const RecordSet>(), {}};
    TickedRecords listed_; // the records that the page shows
    RecordTicks ticks_;    // of those
    SendPreview preview_;
    bool isPreviewed_ = false; // preview_ is of what is shown
    bool isAsked_ = false;     // the next preview is of what is shown
    bool isBusy_ = false;
    std::set<Gtk::ListItem*> bound_; // rows with a widget
    std::set<Gtk::ListItem*> stale_; // those that show what was there before
    bool isArranging_ = false;       // rows change with each frame
    std::string location_;
    sigc::connection waiting_; // for the end of a quick series of changes

    AdwStatusPage* empty_;
    Gtk::Box content_{Gtk::Orientation::VERTICAL};
    Gtk::Label receiver_;
    Glib::RefPtr<SendModel> items_ = SendModel::create();
    Glib::RefPtr<Gtk::StringList> lines_ = Gtk::StringList::create({});
    Gtk::Expander plan_;
    Gtk::Label summary_;
    Gtk::Spinner spinner_;
    Gtk::Button send_;
    sigc::signal<void()> previewed_; // rows on the screen show their notes
};

} // namespace host
