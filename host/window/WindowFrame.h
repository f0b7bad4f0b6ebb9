// SPDX-License-Identifier: MIT
// WindowFrame: the window without its contents. The devices are on one side, and pages beside them;
// where there is no room for both, one covers the other. [main loop]

#pragma once

#include <functional>
#include <string>
#include <vector>

#include <adwaita.h>
#include <gtkmm.h>

namespace host {

class WindowFrame {
public:
    /// @param devices   the side bar
    /// @param messages  what is shown above the pages
    /// @param menu      the window's menu
    WindowFrame(Gtk::Application& application, Gtk::Widget& devices, Gtk::Widget& messages,
                const Glib::RefPtr<Gio::MenuModel>& menu);

    [[nodiscard]] Gtk::ApplicationWindow& window() const { return *window_; }

    /// Adds a button without a text to the header of the devices.
    void addSourceButton(const char* text, const char* icon, const char* action);

    /// Adds a button to the header of the pages. A narrow window shows it without its text.
    void addButton(const char* text, const char* icon, const char* action);

    /// Adds a page, after those that were added before.
    /// @param name  identifies it
    void addPage(Gtk::Widget& page, const char* name, const char* title, const char* icon);

    /// Calls a function with the name of each page that is shown from now on.
    void onPageShown(std::function<void(const std::string& name)> shown);

    /// Shows a page, instead of the devices if there is no room for both.
    void showPage(const char* name);

    /// The name of the page that is shown.
    [[nodiscard]] std::string shownPage() const;

private:
    struct HeaderButton {
        Gtk::Button* button;
        AdwButtonContent* content;
        const char* text;
    };

    [[nodiscard]] GtkWidget* sideBar(Gtk::Widget& devices,
                                     const Glib::RefPtr<Gio::MenuModel>& menu);
    [[nodiscard]] GtkWidget* pages(Gtk::Widget& messages);
    void fold();

    Gtk::ApplicationWindow* window_; // owned by the application
    AdwLeaflet* leaflet_;
    AdwHeaderBar* deviceHeader_;
    AdwHeaderBar* header_; // of the pages
    AdwViewStack* stack_;
    Gtk::Button back_; // to the devices
    std::vector<HeaderButton> buttons_;
    std::function<void(const std::string& name)> pageShown_ = [](const std::string&) {};
};

} // namespace host
