// SPDX-License-Identifier: MIT
// The C++ binding has no classes for this library's widgets.

#include "host/window/WindowFrame.h"

#include "host/window/base/Accessible.h"
#include "host/window/base/Translation.h"

#include <utility>

namespace host {
namespace {

constexpr int kUsualWidth = 1100; // pixels
constexpr int kUsualHeight = 720;
constexpr int kLeastWidth = 360; // of the narrow screens that the library is made for
constexpr int kLeastHeight = 294;

Gtk::Box* column()
{
    return Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
}

GtkWidget* scrolled(Gtk::Widget& child)
{
    auto* const scrolled = Gtk::make_managed<Gtk::ScrolledWindow>();
    scrolled->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scrolled->set_vexpand(true);
    scrolled->set_child(child);
    return GTK_WIDGET(scrolled->gobj());
}

} // namespace

WindowFrame::WindowFrame(Gtk::Application& application, Gtk::Widget& devices, Gtk::Widget& messages,
                         const Glib::RefPtr<Gio::MenuModel>& menu)
    : window_(dynamic_cast<Gtk::ApplicationWindow*>(
          Glib::wrap(GTK_WINDOW(adw_application_window_new(application.gobj()))))),
      leaflet_(ADW_LEAFLET(adw_leaflet_new())), deviceHeader_(ADW_HEADER_BAR(adw_header_bar_new())),
      header_(ADW_HEADER_BAR(adw_header_bar_new())), stack_(ADW_VIEW_STACK(adw_view_stack_new()))
{
    window_->set_default_size(kUsualWidth, kUsualHeight);
    window_->set_size_request(kLeastWidth, kLeastHeight);
    adw_leaflet_append(leaflet_, sideBar(devices, menu));
    auto* const line = gtk_separator_new(GTK_ORIENTATION_VERTICAL);
    adw_leaflet_page_set_navigatable(adw_leaflet_append(leaflet_, line), FALSE);
    adw_leaflet_append(leaflet_, pages(messages));
    adw_leaflet_set_can_navigate_back(leaflet_, TRUE);
    g_signal_connect_swapped(leaflet_, "notify::folded",
                             G_CALLBACK(+[](WindowFrame* self) { self->fold(); }), this);
    g_signal_connect_swapped(
        stack_, "notify::visible-child",
        G_CALLBACK(+[](WindowFrame* self) { self->pageShown_(self->shownPage()); }), this);
    fold();
    adw_application_window_set_content(ADW_APPLICATION_WINDOW(window_->gobj()),
                                       GTK_WIDGET(leaflet_));
}

GtkWidget* WindowFrame::sideBar(Gtk::Widget& devices, const Glib::RefPtr<Gio::MenuModel>& menu)
{
    adw_header_bar_set_title_widget(deviceHeader_, adw_window_title_new(tr("Receivers"), nullptr));
    auto* const menuButton = Gtk::make_managed<Gtk::MenuButton>();
    menuButton->set_icon_name("open-menu-symbolic");
    menuButton->set_tooltip_text(tr("Menu"));
    menuButton->set_primary(true);
    menuButton->set_menu_model(menu);
    nameForReaders(*menuButton, tr("Menu"));
    adw_header_bar_pack_end(deviceHeader_, GTK_WIDGET(menuButton->gobj()));
    g_object_bind_property(leaflet_, "folded", deviceHeader_, "show-end-title-buttons",
                           G_BINDING_SYNC_CREATE);
    auto* const bar = column();
    gtk_box_append(bar->gobj(), GTK_WIDGET(deviceHeader_));
    gtk_box_append(bar->gobj(), scrolled(devices));
    return GTK_WIDGET(bar->gobj());
}

GtkWidget* WindowFrame::pages(Gtk::Widget& messages)
{
    back_.set_icon_name("go-previous-symbolic");
    back_.set_tooltip_text(tr("Receivers"));
    nameForReaders(back_, tr("Receivers"));
    back_.signal_clicked().connect(
        [this] { adw_leaflet_navigate(leaflet_, ADW_NAVIGATION_DIRECTION_BACK); });
    adw_header_bar_pack_start(header_, GTK_WIDGET(back_.gobj()));
    g_object_bind_property(leaflet_, "folded", header_, "show-start-title-buttons",
                           G_BINDING_SYNC_CREATE);
    auto* const switcher = ADW_VIEW_SWITCHER_TITLE(adw_view_switcher_title_new());
    adw_view_switcher_title_set_stack(switcher, stack_);
    adw_header_bar_set_title_widget(header_, GTK_WIDGET(switcher));
    auto* const lowSwitcher = ADW_VIEW_SWITCHER_BAR(adw_view_switcher_bar_new());
    adw_view_switcher_bar_set_stack(lowSwitcher, stack_);
    g_object_bind_property(switcher, "title-visible", lowSwitcher, "reveal", G_BINDING_SYNC_CREATE);
    gtk_widget_set_vexpand(GTK_WIDGET(stack_), TRUE);

    auto* const content = column();
    content->set_hexpand(true);
    for (GtkWidget* const part :
         {GTK_WIDGET(header_), messages.gobj(), GTK_WIDGET(stack_), GTK_WIDGET(lowSwitcher)})
        gtk_box_append(content->gobj(), part);
    namePartsForReaders(*content, ADW_TYPE_VIEW_SWITCHER, tr("Pages"));
    return GTK_WIDGET(content->gobj());
}

void WindowFrame::addSourceButton(const char* text, const char* icon, const char* action)
{
    auto* const button = Gtk::make_managed<Gtk::Button>();
    button->set_icon_name(icon);
    button->set_action_name(action);
    button->set_tooltip_text(text);
    nameForReaders(*button, text);
    adw_header_bar_pack_start(deviceHeader_, GTK_WIDGET(button->gobj()));
}

void WindowFrame::addButton(const char* text, const char* icon, const char* action)
{
    auto* const content = ADW_BUTTON_CONTENT(adw_button_content_new());
    adw_button_content_set_icon_name(content, icon);
    auto* const button = Gtk::make_managed<Gtk::Button>();
    gtk_button_set_child(button->gobj(), GTK_WIDGET(content));
    button->set_action_name(action);
    button->set_tooltip_text(text);
    buttons_.push_back({button, content, text});
    adw_header_bar_pack_start(header_, GTK_WIDGET(button->gobj()));
    fold();
}

void WindowFrame::addPage(Gtk::Widget& page, const char* name, const char* title, const char* icon)
{
    adw_view_stack_add_titled(stack_, page.gobj(), name, title);
    adw_view_stack_page_set_icon_name(adw_view_stack_get_page(stack_, page.gobj()), icon);
}

void WindowFrame::showPage(const char* name)
{
    adw_view_stack_set_visible_child_name(stack_, name);
    adw_leaflet_navigate(leaflet_, ADW_NAVIGATION_DIRECTION_FORWARD);
}

std::string WindowFrame::shownPage() const
{
    const char* const name = adw_view_stack_get_visible_child_name(stack_);
    return name != nullptr ? name : ""; // there is none before the first page and after the last
}

void WindowFrame::onPageShown(std::function<void(const std::string& name)> shown)
{
    pageShown_ = std::move(shown);
}

void WindowFrame::fold()
{
    const bool isFolded = adw_leaflet_get_folded(leaflet_) != FALSE;
    back_.set_visible(isFolded);
    for (const auto& button : buttons_) {
        adw_button_content_set_label(button.content, isFolded ? "" : button.text);
        if (isFolded)
            nameForReaders(*button.button, button.text);
        else // they would hear it twice
            gtk_accessible_reset_property(GTK_ACCESSIBLE(button.button->gobj()),
                                          GTK_ACCESSIBLE_PROPERTY_LABEL);
    }
}

} // namespace host
