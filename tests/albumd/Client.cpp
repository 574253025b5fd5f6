// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/albumd/Client.h"

#include <cstdio>

namespace albumtest {
namespace {

std::string seven(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.7f", value);
    return text;
}

std::string coordinates(double x, double y)
{
    return " sphere_x=\"" + seven(x) + "\" sphere_y=\"" + seven(y) + "\"";
}

Answer toAnswer(const httplib::Result& result)
{
    return result ? Answer{result->status, result->body, result->headers} : Answer();
}

} // namespace

std::string percentEncoded(std::string_view text)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string all;
    for (const char c : text) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        const auto byte = static_cast<unsigned char>(c);
        if (plain)
            all += c;
        else
            all += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return all;
}

std::string address(const std::string& path, const Items& items)
{
    std::string all = path;
    for (const auto& [name, value] : items)
        all += (all.size() == path.size() ? '?' : '&') + name + '=' + percentEncoded(value);
    return all;
}

std::vector<std::string> lines(const std::string& reply)
{
    std::vector<std::string> all;
    for (std::size_t from = 0;;) {
        const std::size_t end = reply.find("\r\n", from);
        all.push_back(reply.substr(from, end - from));
        if (end == std::string::npos) return all;
        from = end + 2;
    }
}

Client::Client(int port)
    : m_client("127.0.0.1", port)
{
    m_client.set_read_timeout(60);
    m_client.set_write_timeout(60);
    m_client.set_url_encode(false);
}

Answer Client::get(const std::string& path, const Items& items)
{
    return toAnswer(m_client.Get(address(path, items)));
}

Answer Client::post(const std::string& path, const Items& items, const std::string& body)
{
    return toAnswer(m_client.Post(address(path, items), body, "application/x-www-form-urlencoded"));
}

bool Client::login(const std::string& email, const std::string& password)
{
    const std::vector<std::string> reply =
        lines(get("/login", {{"email", email}, {"password", password}}).body);
    if (reply.size() < 8 || reply[0] != "OK") return false;
    token = reply[1];
    return true;
}

Answer Client::upload(const std::string& id, const pnotest::Bytes& file)
{
    return post("/upload", {{"token", token}, {"panoid", id}}, std::string(file.begin(), file.end()));
}

std::vector<std::string> Client::listed()
{
    std::vector<std::string> reply = lines(get("/get_pano_list", {{"token", token}}).body);
    if (reply[0] != "OK") return {"refused"};
    reply.erase(reply.begin());
    return reply;
}

std::string Client::createAlbum(const std::vector<std::string>& ids, const std::string& name,
                                const std::string& entry)
{
    std::string body;
    for (const std::string& id : ids)
        body += (body.empty() ? "" : "\r\n") + id;
    const Answer answer = post("/create_roaming_album",
                               {{"token", token},
                                {"albumnotes", name},
                                {"albummode", "1"},
                                {"entrypanoid", entry.empty() ? ids.front() : entry},
                                {"direction", "0"},
                                {"elevation", "1.5707963267949"},
                                {"viewangle", "1.5707963267949"}},
                               body);
    const std::vector<std::string> reply = lines(answer.body);
    return reply.size() >= 2 && reply[0] == "OK" && reply[1].size() == 14 ? reply[1] : std::string();
}

std::string idNumber(int number)
{
    return std::string("Abcdefghijkl") + static_cast<char>('a' + number / 26 % 26) +
           static_cast<char>('a' + number % 26);
}

pnotest::Bytes smallPanorama(const std::string& id, std::size_t padding)
{
    pnotest::PnoOptions options;
    options.identity = id;
    std::vector<pnotest::Segment> segments = pnotest::parts(options).segments();
    if (padding > 0) {
        pnotest::Segment filler;
        filler.marker = 0xFFDE;
        filler.data.assign(padding, 0x5A);
        segments.push_back(std::move(filler));
    }
    return pnotest::join(segments);
}

std::string locationText(double x, double y, double direction, int planX, int planY, const std::string& plan)
{
    return "<location position_x = \"" + seven(x) + "\" position_y=\"" + seven(y) +
           "\" position_z=\"0.0000000\"" + " vertex_x=\"" + seven(x) + "\" vertex_y=\"" + seven(y) +
           "\" direction=\"" + seven(direction) + "\" plan_center_x=\"" + std::to_string(planX) +
           "\" plan_center_y=\"" + std::to_string(planY) + "\" plan_src=\"" + plan + "\"/>";
}

std::string linkText(const std::string& pano_0, const std::string& pano_1, const LinkValues& values)
{
    return "<pano_link pano_id_0=\"" + pano_0 + "\" pano_id_1=\"" + pano_1 + "\" rot_0=\"" +
           seven(values.rot_0) + "\" rot_1=\"" + seven(values.rot_1) +
           "\" tilt_x0=\"0.0000000\" tilt_x1=\"0.0000000\" tilt_y0=\"0.0000000\" icon_y0=\"" +
           seven(values.icon_y0) + "\" icon_y1=\"" + seven(values.icon_y1) +
           "\" spacing=\"2.0000000\" mode=\"0\"/>";
}

std::string photoTag(double x, double y, const std::string& caption, const std::string& name)
{
    return "\t\t\t\t<link_photo" + coordinates(x, y) + " caption=\"" + caption + "\" src=\"" + name +
           "\"/>\r\n";
}

std::string infoTag(double x, double y, const std::string& caption, const std::string& escapedContent)
{
    return "\t\t\t\t<link_info" + coordinates(x, y) + " caption=\"" + caption + "\">" + escapedContent +
           "</link_info>\r\n";
}

} // namespace albumtest
