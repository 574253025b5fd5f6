// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// All words of the page, in the browser's language: Chinese where it asks for that first, English otherwise.

const english = {
    noTour: "This album cannot be loaded. It may have been taken off the service.",
    emptyTour: "There is no panorama left in this album.",
    noService: "The album service does not answer. Is the connection still there?",
    noWebGl: "This browser shows no 3D pictures (WebGL). Switch it on, or take another browser.",
    noPanorama: "This panorama cannot be loaded.",
    noPhoto: "This photo cannot be loaded.",
    noCloud: "The point cloud cannot be loaded.",
    cloud: "Point cloud",
    cloudView: "Point cloud: arrow keys turn it, plus and minus zoom",
    threeD: "3D",
    retry: "Try again",
    close: "Close",
    walkOn: "Walk on",
    goTo: "Go to place",
    photo: "Photo",
    text: "Text",
    plan: "Plan",
    zoomIn: "Closer",
    zoomOut: "Farther",
    fullScreen: "Full screen",
    view: "Panorama: arrow keys turn, plus and minus zoom, Enter walks on, Tab goes from marker to marker",
    hint: "Drag to look around. Click a ring on the floor to walk there.",
};

const chinese = {
    noTour: "无法载入此相册，它可能已被移除。",
    emptyTour: "此相册中已没有全景图。",
    noService: "相册服务没有响应，请检查网络连接。",
    noWebGl: "此浏览器无法显示三维画面（WebGL）。请启用该功能或换用其他浏览器。",
    noPanorama: "无法载入此全景图。",
    noPhoto: "无法载入此照片。",
    noCloud: "无法载入点云。",
    cloud: "点云",
    cloudView: "点云：方向键旋转，加减键缩放",
    threeD: "三维",
    retry: "重试",
    close: "关闭",
    walkOn: "前往",
    goTo: "前往位置",
    photo: "照片",
    text: "文字",
    plan: "平面图",
    zoomIn: "放大",
    zoomOut: "缩小",
    fullScreen: "全屏",
    view: "全景图：方向键转动，加减键缩放，回车键前进，Tab 键切换标记",
    hint: "拖动可环顾四周，点击地面上的圆环可走到该处。",
};

const language = (navigator.languages && navigator.languages[0]) || navigator.language || "en";
export const isChinese = language.toLowerCase().startsWith("zh");
export const texts = isChinese ? chinese : english;
