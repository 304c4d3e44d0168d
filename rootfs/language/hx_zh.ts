<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>hx</name>
    <message>
        <source>Setting</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Call Feature</source>
        <translation>通话功能</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>媒体</translation>
    </message>
    <message>
        <source>WAN</source>
        <translation>网络</translation>
    </message>
    <message>
        <source>Account Setting</source>
        <translation>账号设置</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>安全</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Date &amp; Time</source>
        <translation>日期和时间</translation>
    </message>
    <message>
        <source>Auto Provision</source>
        <translation>自动配置</translation>
    </message>
    <message>
        <source>LCD Adjusting</source>
        <translation>屏幕校准</translation>
    </message>
    <message>
        <source>TV Output</source>
        <translation>电视输出</translation>
    </message>
    <message>
        <source>Personalize</source>
        <translation>个性化</translation>
    </message>
    <message>
        <source>Screen Saver</source>
        <translation>屏幕保护</translation>
    </message>
    <message>
        <source>Sound Set</source>
        <translation>声音设置</translation>
    </message>
    <message>
        <source>Version Detail</source>
        <translation>版本详情</translation>
    </message>
    <message>
        <source>Factory</source>
        <translation>恢复出厂设置</translation>
    </message>
    <message>
        <source>Reboot</source>
        <translation>重启</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>呼叫转移</translation>
    </message>
    <message>
        <source>Auto Answer</source>
        <translation>自动应答</translation>
    </message>
    <message>
        <source>Voice Mail</source>
        <translation>语音信箱</translation>
    </message>
    <message>
        <source>DSS Key</source>
        <translation>可编程键</translation>
    </message>
    <message>
        <source>Key As Send</source>
        <translation>发送键</translation>
    </message>
    <message>
        <source>Call Waiting</source>
        <translation>呼叫等待</translation>
    </message>
    <message>
        <source>Hotline</source>
        <translation>热线</translation>
    </message>
    <message>
        <source>Anonymous Call</source>
        <translation>匿名呼叫</translation>
    </message>
    <message>
        <source>Video Set</source>
        <translation>视频设置</translation>
    </message>
    <message>
        <source>Picture-dial Setting</source>
        <translation>图片拨号</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>语音留言</translation>
    </message>
    <message>
        <source>Weather</source>
        <translation>天气</translation>
    </message>
    <message>
        <source>Stock</source>
        <translation>股票</translation>
    </message>
    <message>
        <source>Ndeck</source>
        <translation>Ndeck</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>通讯录</translation>
    </message>
    <message>
        <source>Call Histroy</source>
        <translation>通话记录</translation>
    </message>
    <message>
        <source>Door Phone</source>
        <translation>门口机</translation>
    </message>
    <message>
        <source>IP Camera</source>
        <translation>网络摄像机</translation>
    </message>
    <message>
        <source>Photo Play</source>
        <translation>图片播放</translation>
    </message>
    <message>
        <source>Video Play</source>
        <translation>视频播放</translation>
    </message>
    <message>
        <source>Photo Manager</source>
        <translation>图片管理</translation>
    </message>
    <message>
        <source>Video Manager</source>
        <translation>视频管理</translation>
    </message>
    <message>
        <source>Sound Manager</source>
        <translation>铃声管理</translation>
    </message>
    <message>
        <source>Wallpaper Manager</source>
        <translation>壁纸管理</translation>
    </message>
    <message>
        <source>Contact Picture Manage</source>
        <translation>联系人头像</translation>
    </message>
    <message>
        <source>Ringtone Manager</source>
        <translation>铃声管理</translation>
    </message>
    <message>
        <source>File Manager</source>
        <translation>文件管理</translation>
    </message>
    <message>
        <source>Date and Time</source>
        <translation>日期和时间</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>IME</source>
        <translation>输入法</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>More</source>
        <translation>更多</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>下一个</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>正在加载……</translation>
    </message>
    <message>
        <source>Loading Local Phonebook Module</source>
        <translation>正在加载本地通讯录</translation>
    </message>
    <message>
        <source>Loading Remote Phonebook Module</source>
        <translation>正在加载远程通讯录</translation>
    </message>
    <message>
        <source>Loading CallHistroy Module</source>
        <translation>正在加载通话记录</translation>
    </message>
    <message>
        <source>Loading Setting Module</source>
        <translation>正在加载设置</translation>
    </message>
    <message>
        <source>Loading Call Feature Module</source>
        <translation>正在加载通话功能</translation>
    </message>
    <message>
        <source>Loading Application Module</source>
        <translation>正在加载应用</translation>
    </message>
    <message>
        <source>Loading Media Module</source>
        <translation>正在加载媒体</translation>
    </message>
    <message>
        <source>Loading Browser Module</source>
        <translation>正在加载浏览器</translation>
    </message>
    <message>
        <source>auto upgrading!</source>
        <translation>正在自动升级！</translation>
    </message>
    <message>
        <source>Reset to factory?</source>
        <translation>恢复出厂设置？</translation>
    </message>
    <message>
        <source>The phone could not be reset!</source>
        <translation>话机无法恢复出厂设置！</translation>
    </message>
    <message>
        <source>The phone restarts with its factory settings.</source>
        <translation>话机将以出厂设置重新启动。</translation>
    </message>
    <message>
        <source>Reboot device?</source>
        <translation>重启设备？</translation>
    </message>
    <message>
        <source>Touch screen calibration will begin.</source>
        <translation>即将开始触摸屏校准。</translation>
    </message>
    <message>
        <source>This feature is under construction.</source>
        <translation>该功能正在开发中。</translation>
    </message>
    <message>
        <source>Unknow dialog type</source>
        <translation>未知的页面类型</translation>
    </message>
    <message>
        <source>Fail to load xml file [/rundata/data/stockData.xml]</source>
        <translation>无法加载文件 [/rundata/data/stockData.xml]</translation>
    </message>
    <message>
        <source>DHCP</source>
        <translation>DHCP</translation>
    </message>
    <message>
        <source>PPPoE</source>
        <translation>PPPoE</translation>
    </message>
    <message>
        <source>Static IP</source>
        <translation>静态 IP</translation>
    </message>
    <message>
        <source>User Name</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>IP 地址</translation>
    </message>
    <message>
        <source>MASK</source>
        <translation>子网掩码</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>网关</translation>
    </message>
    <message>
        <source>DNS1</source>
        <translation>DNS1</translation>
    </message>
    <message>
        <source>DNS2</source>
        <translation>DNS2</translation>
    </message>
    <message>
        <source>User name is invalid!</source>
        <translation>用户名无效！</translation>
    </message>
    <message>
        <source>Password is invalid!</source>
        <translation>密码无效！</translation>
    </message>
    <message>
        <source>IP address is invalid!</source>
        <translation>IP 地址无效！</translation>
    </message>
    <message>
        <source>Ip Address is used!</source>
        <translation>IP 地址已被占用！</translation>
    </message>
    <message>
        <source>Subnet mask is invalid!</source>
        <translation>子网掩码无效！</translation>
    </message>
    <message>
        <source>Gateway is invalid!</source>
        <translation>网关无效！</translation>
    </message>
    <message>
        <source>DNS1 is invalid!</source>
        <translation>DNS1 无效！</translation>
    </message>
    <message>
        <source>DNS2 is invalid!</source>
        <translation>DNS2 无效！</translation>
    </message>
    <message>
        <source>Network configuration has changed, reboot system?</source>
        <translation>网络配置已更改，是否重启系统？</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>账号</translation>
    </message>
    <message>
        <source>Enable Line</source>
        <translation>启用线路</translation>
    </message>
    <message>
        <source>Display Name</source>
        <translation>显示名称</translation>
    </message>
    <message>
        <source>Register Name</source>
        <translation>注册名</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>服务器</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>端口</translation>
    </message>
    <message>
        <source>Enable STUN</source>
        <translation>启用 STUN</translation>
    </message>
    <message>
        <source>Enable OutBound</source>
        <translation>启用出站代理</translation>
    </message>
    <message>
        <source>Display name is invalid!</source>
        <translation>显示名称无效！</translation>
    </message>
    <message>
        <source>Register name is invalid!</source>
        <translation>注册名无效！</translation>
    </message>
    <message>
        <source>SIP proxy is invalid!</source>
        <translation>SIP 服务器无效！</translation>
    </message>
    <message>
        <source>SIP proxy server is invalid!</source>
        <translation>SIP 服务器地址无效！</translation>
    </message>
    <message>
        <source>SIP proxy port is invalid!</source>
        <translation>SIP 服务器端口无效！</translation>
    </message>
    <message>
        <source>STUN server is invalid!</source>
        <translation>STUN 服务器无效！</translation>
    </message>
    <message>
        <source>STUN server port is invalid!</source>
        <translation>STUN 服务器端口无效！</translation>
    </message>
    <message>
        <source>OutBound server is invalid!</source>
        <translation>出站代理服务器无效！</translation>
    </message>
    <message>
        <source>OutBound server port is invalid!</source>
        <translation>出站代理端口无效！</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>SoftWare Version</source>
        <translation>软件版本</translation>
    </message>
    <message>
        <source>HardWare Version</source>
        <translation>硬件版本</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>网络</translation>
    </message>
    <message>
        <source>MAC Address</source>
        <translation>MAC 地址</translation>
    </message>
    <message>
        <source>WAN Port Type</source>
        <translation>WAN 口类型</translation>
    </message>
    <message>
        <source>Link Status</source>
        <translation>连接状态</translation>
    </message>
    <message>
        <source>Phone Number</source>
        <translation>电话号码</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>已连接</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>Conflict</source>
        <translation>地址冲突</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>已禁用</translation>
    </message>
    <message>
        <source>Registering</source>
        <translation>正在注册</translation>
    </message>
    <message>
        <source>Registered</source>
        <translation>已注册</translation>
    </message>
    <message>
        <source>Register failed</source>
        <translation>注册失败</translation>
    </message>
    <message>
        <source>Unregistered</source>
        <translation>未注册</translation>
    </message>
    <message>
        <source>Default account</source>
        <translation>默认账号</translation>
    </message>
    <message>
        <source>Inexistence</source>
        <translation>不存在</translation>
    </message>
    <message>
        <source>Unregistering</source>
        <translation>正在注销</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>无</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>项目</translation>
    </message>
    <message>
        <source>Old Password</source>
        <translation>旧密码</translation>
    </message>
    <message>
        <source>New Password</source>
        <translation>新密码</translation>
    </message>
    <message>
        <source>Re-enter</source>
        <translation>再次输入</translation>
    </message>
    <message>
        <source>Admin Password</source>
        <translation>管理员密码</translation>
    </message>
    <message>
        <source>Old password is wrong!</source>
        <translation>旧密码错误！</translation>
    </message>
    <message>
        <source>New passwords do not match.</source>
        <translation>两次输入的新密码不一致。</translation>
    </message>
    <message>
        <source>Please input the password:</source>
        <translation>请输入密码：</translation>
    </message>
    <message>
        <source>Password is wrong!</source>
        <translation>密码错误！</translation>
    </message>
    <message>
        <source>The phone number is empty!</source>
        <translation>电话号码不能为空！</translation>
    </message>
    <message>
        <source>Time Zone</source>
        <translation>时区</translation>
    </message>
    <message>
        <source>Time Format</source>
        <translation>时间格式</translation>
    </message>
    <message>
        <source>Time Server</source>
        <translation>时间服务器</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>日期</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Time</source>
        <comment>how long</comment>
        <translation>时间</translation>
    </message>
    <message>
        <source>NTP Mode</source>
        <translation>网络时间</translation>
    </message>
    <message>
        <source>Manual Mode</source>
        <translation>手动设置</translation>
    </message>
    <message>
        <source>24-hour</source>
        <translation>24 小时制</translation>
    </message>
    <message>
        <source>12-hour</source>
        <translation>12 小时制</translation>
    </message>
    <message>
        <source>Time server is invalid!</source>
        <translation>时间服务器无效！</translation>
    </message>
    <message>
        <source>Door Phone 1</source>
        <translation>门口机 1</translation>
    </message>
    <message>
        <source>IP Camera 1</source>
        <translation>网络摄像机 1</translation>
    </message>
    <message>
        <source>LDAP</source>
        <translation>LDAP</translation>
    </message>
    <message>
        <source>Local Phonebook</source>
        <translation>本地通讯录</translation>
    </message>
    <message>
        <source>Sunday</source>
        <translation>星期日</translation>
    </message>
    <message>
        <source>Monday</source>
        <translation>星期一</translation>
    </message>
    <message>
        <source>Tuesday</source>
        <translation>星期二</translation>
    </message>
    <message>
        <source>Wednesday</source>
        <translation>星期三</translation>
    </message>
    <message>
        <source>Thursday</source>
        <translation>星期四</translation>
    </message>
    <message>
        <source>Friday</source>
        <translation>星期五</translation>
    </message>
    <message>
        <source>Saturday</source>
        <translation>星期六</translation>
    </message>
    <message>
        <source>January</source>
        <translation>1月</translation>
    </message>
    <message>
        <source>February</source>
        <translation>2月</translation>
    </message>
    <message>
        <source>March</source>
        <translation>3月</translation>
    </message>
    <message>
        <source>April</source>
        <translation>4月</translation>
    </message>
    <message>
        <source>May</source>
        <translation>5月</translation>
    </message>
    <message>
        <source>June</source>
        <translation>6月</translation>
    </message>
    <message>
        <source>July</source>
        <translation>7月</translation>
    </message>
    <message>
        <source>August</source>
        <translation>8月</translation>
    </message>
    <message>
        <source>September</source>
        <translation>9月</translation>
    </message>
    <message>
        <source>October</source>
        <translation>10月</translation>
    </message>
    <message>
        <source>November</source>
        <translation>11月</translation>
    </message>
    <message>
        <source>December</source>
        <translation>12月</translation>
    </message>
    <message>
        <source>%1, %2 %3</source>
        <translation>%3%2日 %1</translation>
    </message>
    <message>
        <source>Video Phone</source>
        <translation>可视电话</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>线路</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>姓名</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>号码</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
    <message>
        <source>Contact</source>
        <translation>联系人</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>拨打</translation>
    </message>
    <message>
        <source>New</source>
        <translation>新建</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>编辑</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>时长</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>Name or number</source>
        <translation>姓名或号码</translation>
    </message>
    <message>
        <source>Delete Contact</source>
        <translation>删除联系人</translation>
    </message>
    <message>
        <source>Delete this contact?</source>
        <translation>删除此联系人？</translation>
    </message>
    <message>
        <source>Settings cannot be stored. Changes last until the phone is switched off.</source>
        <translation>设置无法保存。更改在话机关机前有效。</translation>
    </message>
    <message>
        <source>The call history cannot be saved!</source>
        <translation>无法保存通话记录！</translation>
    </message>
    <message>
        <source>The contact cannot be saved!</source>
        <translation>无法保存联系人！</translation>
    </message>
    <message>
        <source>The name is empty!</source>
        <translation>姓名不能为空！</translation>
    </message>
    <message>
        <source>The phone book is empty.</source>
        <translation>通讯录为空。</translation>
    </message>
    <message>
        <source>The phone book cannot be loaded.</source>
        <translation>无法加载通讯录。</translation>
    </message>
    <message>
        <source>Remote Phonebook</source>
        <translation>远程通讯录</translation>
    </message>
    <message>
        <source>There are no calls yet.</source>
        <translation>暂无通话记录。</translation>
    </message>
    <message>
        <source>Delete all calls?</source>
        <translation>删除所有通话记录？</translation>
    </message>
    <message>
        <source>The calls cannot be deleted!</source>
        <translation>无法删除通话记录！</translation>
    </message>
    <message>
        <source>Nothing was found.</source>
        <translation>未找到结果。</translation>
    </message>
    <message>
        <source>LDAP server is not reachable</source>
        <translation>无法连接 LDAP 服务器</translation>
    </message>
    <message>
        <source>Browser</source>
        <translation>浏览器</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>刷新</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>上一页</translation>
    </message>
    <message>
        <source>The page cannot be loaded.</source>
        <translation>无法加载页面。</translation>
    </message>
    <message>
        <source>This page cannot be shown.</source>
        <translation>无法显示此页面。</translation>
    </message>
    <message>
        <source>This address cannot be opened.</source>
        <translation>无法打开此地址。</translation>
    </message>
    <message>
        <source>Calling...</source>
        <translation>正在呼叫……</translation>
    </message>
    <message>
        <source>Ringing...</source>
        <translation>正在振铃……</translation>
    </message>
    <message>
        <source>Transferring...</source>
        <translation>正在转接……</translation>
    </message>
    <message>
        <source>Incoming call</source>
        <translation>来电</translation>
    </message>
    <message>
        <source>In call</source>
        <translation>通话中</translation>
    </message>
    <message>
        <source>Call ended</source>
        <translation>通话结束</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>占线</translation>
    </message>
    <message>
        <source>The line is not registered</source>
        <translation>线路未注册</translation>
    </message>
    <message>
        <source>The server does not answer</source>
        <translation>服务器无响应</translation>
    </message>
    <message>
        <source>The server's name is not known</source>
        <translation>找不到该服务器名称</translation>
    </message>
    <message>
        <source>The server does not accept name or password</source>
        <translation>服务器不接受用户名或密码</translation>
    </message>
    <message>
        <source>There is no secure connection to the server</source>
        <translation>与服务器之间没有安全连接</translation>
    </message>
    <message>
        <source>The phone has no usable certificates</source>
        <translation>话机没有可用的证书</translation>
    </message>
    <message>
        <source>The certificate of the server is for another name</source>
        <translation>服务器证书的名称不符</translation>
    </message>
    <message>
        <source>The certificate of the server is from an unknown authority</source>
        <translation>服务器证书的颁发机构未知</translation>
    </message>
    <message>
        <source>The certificate of the server has expired</source>
        <translation>服务器证书已过期</translation>
    </message>
    <message>
        <source>The certificate of the server is not valid yet</source>
        <translation>服务器证书尚未生效</translation>
    </message>
    <message>
        <source>The server does not accept the certificate of the phone</source>
        <translation>服务器不接受话机的证书</translation>
    </message>
    <message>
        <source>The server refuses a secure connection</source>
        <translation>服务器拒绝安全连接</translation>
    </message>
    <message>
        <source>The server knows no secure connection</source>
        <translation>服务器不支持安全连接</translation>
    </message>
    <message>
        <source>The name service does not answer</source>
        <translation>域名服务无响应</translation>
    </message>
    <message>
        <source>The STUN server does not answer</source>
        <translation>STUN 服务器无响应</translation>
    </message>
    <message>
        <source>The server does not know the user name</source>
        <translation>服务器不认识该用户名</translation>
    </message>
    <message>
        <source>The server is out of service</source>
        <translation>服务器暂停服务</translation>
    </message>
    <message>
        <source>The server asks for the password in an unknown way</source>
        <translation>服务器以未知方式要求密码</translation>
    </message>
    <message>
        <source>The server refuses the registration</source>
        <translation>服务器拒绝注册</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>The call was declined</source>
        <translation>对方已拒接</translation>
    </message>
    <message>
        <source>This number is not known</source>
        <translation>此号码不存在</translation>
    </message>
    <message>
        <source>Not available at present</source>
        <translation>暂时无法接通</translation>
    </message>
    <message>
        <source>The server does not allow this call</source>
        <translation>服务器不允许此呼叫</translation>
    </message>
    <message>
        <source>Anonymous</source>
        <translation>匿名</translation>
    </message>
    <message>
        <source>Anonymous calls are not accepted</source>
        <translation>对方不接受匿名呼叫</translation>
    </message>
    <message>
        <source>The two phones have no sound in common</source>
        <translation>双方没有共同的声音格式</translation>
    </message>
    <message>
        <source>The call could not be made</source>
        <translation>呼叫失败</translation>
    </message>
    <message>
        <source>Sound is not available at present</source>
        <translation>声音暂时不可用</translation>
    </message>
    <message>
        <source>The connection was lost</source>
        <translation>连接已中断</translation>
    </message>
    <message>
        <source>Key tones do not arrive</source>
        <translation>按键音无法送达</translation>
    </message>
    <message>
        <source>Another phone has answered</source>
        <translation>已由其他话机接听</translation>
    </message>
    <message>
        <source>Nobody answers</source>
        <translation>无人接听</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>静音</translation>
    </message>
    <message>
        <source>Unmute</source>
        <translation>取消静音</translation>
    </message>
    <message>
        <source>Muted</source>
        <translation>已静音</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
    <message>
        <source>Volume</source>
        <comment>of trades</comment>
        <translation>成交量</translation>
    </message>
    <message>
        <source>Volume -</source>
        <translation>音量 -</translation>
    </message>
    <message>
        <source>Volume +</source>
        <translation>音量 +</translation>
    </message>
    <message>
        <source>End</source>
        <translation>挂断</translation>
    </message>
    <message>
        <source>Image is oversized!</source>
        <translation>图片太大！</translation>
    </message>
    <message>
        <source>Image is error!</source>
        <translation>图片已损坏！</translation>
    </message>
    <message>
        <source>Jan</source>
        <translation>1月</translation>
    </message>
    <message>
        <source>Feb</source>
        <translation>2月</translation>
    </message>
    <message>
        <source>Mar</source>
        <translation>3月</translation>
    </message>
    <message>
        <source>Apr</source>
        <translation>4月</translation>
    </message>
    <message>
        <source>Jun</source>
        <translation>6月</translation>
    </message>
    <message>
        <source>Jul</source>
        <translation>7月</translation>
    </message>
    <message>
        <source>Aug</source>
        <translation>8月</translation>
    </message>
    <message>
        <source>Sep</source>
        <translation>9月</translation>
    </message>
    <message>
        <source>Oct</source>
        <translation>10月</translation>
    </message>
    <message>
        <source>Nov</source>
        <translation>11月</translation>
    </message>
    <message>
        <source>Dec</source>
        <translation>12月</translation>
    </message>
    <message>
        <source>Mon</source>
        <translation>周一</translation>
    </message>
    <message>
        <source>Tue</source>
        <translation>周二</translation>
    </message>
    <message>
        <source>Wed</source>
        <translation>周三</translation>
    </message>
    <message>
        <source>Thu</source>
        <translation>周四</translation>
    </message>
    <message>
        <source>Fri</source>
        <translation>周五</translation>
    </message>
    <message>
        <source>Sat</source>
        <translation>周六</translation>
    </message>
    <message>
        <source>Sun</source>
        <translation>周日</translation>
    </message>
    <message>
        <source>%1 AM</source>
        <translation>上午 %1</translation>
    </message>
    <message>
        <source>%1 PM</source>
        <translation>下午 %1</translation>
    </message>
    <message>
        <source>Exit</source>
        <comment>state of a line</comment>
        <translation>已退出</translation>
    </message>
    <message>
        <source>The settings cannot be saved!</source>
        <translation>无法保存设置！</translation>
    </message>
    <message>
        <source>Line 1</source>
        <translation>线路 1</translation>
    </message>
    <message>
        <source>Line 2</source>
        <translation>线路 2</translation>
    </message>
    <message>
        <source>Line 3</source>
        <translation>线路 3</translation>
    </message>
    <message>
        <source>Line 4</source>
        <translation>线路 4</translation>
    </message>
    <message>
        <source>Discard the changes?</source>
        <translation>放弃更改？</translation>
    </message>
    <message>
        <source>No media found in this phone !</source>
        <translation>此话机中没有媒体文件！</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>No enough space !</source>
        <translation>空间不足！</translation>
    </message>
    <message>
        <source>Load the same file ?</source>
        <translation>已有同名文件，要替换吗？</translation>
    </message>
    <message>
        <source>Loading fail!</source>
        <translation>导入失败！</translation>
    </message>
    <message>
        <source>Successful loading!</source>
        <translation>导入成功！</translation>
    </message>
    <message>
        <source>Importing...</source>
        <translation>正在导入……</translation>
    </message>
    <message>
        <source>Deleting...</source>
        <translation>正在删除……</translation>
    </message>
    <message>
        <source>Delete failed!</source>
        <translation>删除失败！</translation>
    </message>
    <message>
        <source>Delete </source>
        <translation>删除 </translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>预览</translation>
    </message>
    <message>
        <source>It's Image is use,Delete it ?</source>
        <translation>联系人正在使用此图片，是否删除？</translation>
    </message>
    <message>
        <source>It's read only,can't be deleted!</source>
        <translation>此文件为只读，不能删除！</translation>
    </message>
    <message>
        <source>It's the Wall Paper! Delete it ?</source>
        <translation>这是当前壁纸！是否删除？</translation>
    </message>
    <message>
        <source>No media found in this phone!</source>
        <translation>此话机中没有媒体文件！</translation>
    </message>
    <message>
        <source>The USB device is not connected!</source>
        <translation>USB 设备未连接！</translation>
    </message>
    <message>
        <source>USB</source>
        <translation>USB</translation>
    </message>
    <message>
        <source>10minutes</source>
        <translation>10 分钟</translation>
    </message>
    <message>
        <source>1minute</source>
        <translation>1 分钟</translation>
    </message>
    <message>
        <source>2minutes</source>
        <translation>2 分钟</translation>
    </message>
    <message>
        <source>30minutes</source>
        <translation>30 分钟</translation>
    </message>
    <message>
        <source>30seconds</source>
        <translation>30 秒</translation>
    </message>
    <message>
        <source>5minutes</source>
        <translation>5 分钟</translation>
    </message>
    <message>
        <source>Always on</source>
        <translation>常亮</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>接听</translation>
    </message>
    <message>
        <source>Backlight Time</source>
        <translation>背光时间</translation>
    </message>
    <message>
        <source>DND Effect On PSTN</source>
        <translation>免打扰对 PSTN 生效</translation>
    </message>
    <message>
        <source>Decline</source>
        <translation>拒接</translation>
    </message>
    <message>
        <source>Desktop Setting</source>
        <translation>桌面设置</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>手动</translation>
    </message>
    <message>
        <source>NTSC</source>
        <translation>NTSC</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>从不</translation>
    </message>
    <message>
        <source>PAL</source>
        <translation>PAL</translation>
    </message>
    <message>
        <source>Phone Setting</source>
        <translation>话机设置</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>照片</translation>
    </message>
    <message>
        <source>Reset language ?</source>
        <translation>重启话机以切换语言？</translation>
    </message>
    <message>
        <source>Ringing Tone</source>
        <translation>铃声</translation>
    </message>
    <message>
        <source>Ringing Volume</source>
        <translation>铃声音量</translation>
    </message>
    <message>
        <source>Screen Type</source>
        <translation>屏幕保护类型</translation>
    </message>
    <message>
        <source>Server URL</source>
        <translation>服务器 URL</translation>
    </message>
    <message>
        <source>TV Format</source>
        <translation>电视制式</translation>
    </message>
    <message>
        <source>Talking Volume</source>
        <translation>通话音量</translation>
    </message>
    <message>
        <source>Tones and Volume</source>
        <translation>铃声和音量</translation>
    </message>
    <message>
        <source>Update Server Setting</source>
        <translation>更新服务器设置</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>视频</translation>
    </message>
    <message>
        <source>Wallpaper</source>
        <translation>壁纸</translation>
    </message>
    <message>
        <source>Can not open Device</source>
        <translation>无法打开触摸屏。</translation>
    </message>
    <message>
        <source>LCD Adjusting fail, please try again!</source>
        <translation>校准失败，请重试！</translation>
    </message>
    <message>
        <source>Please keep pressing each black cross until it moves to the next position on the screen or confirmation page appears!</source>
        <translation>请按住每个黑色十字，直到它移到下一个位置或出现确认页面！</translation>
    </message>
    <message>
        <source>Touch screen calibration finish. Use the new profile?</source>
        <translation>触摸屏校准完成。是否使用新的配置？</translation>
    </message>
    <message>
        <source>Please input the phone number:</source>
        <translation>请输入电话号码：</translation>
    </message>
    <message>
        <source>No line is free</source>
        <translation>没有空闲线路</translation>
    </message>
    <message>
        <source>This cannot be dialled</source>
        <translation>无法拨打此号码</translation>
    </message>
    <message>
        <source>DSS Key</source>
        <comment>one of them</comment>
        <translation>可编程键</translation>
    </message>
    <message>
        <source>DSS Key List</source>
        <translation>可编程键列表</translation>
    </message>
    <message>
        <source>DSS Key Setting</source>
        <translation>可编程键设置</translation>
    </message>
    <message>
        <source>Speed Dial Setting</source>
        <translation>快速拨号设置</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>按键</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>标签</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>值</translation>
    </message>
    <message>
        <source>Extension</source>
        <translation>分机</translation>
    </message>
    <message>
        <source>Speed Dial</source>
        <translation>快速拨号</translation>
    </message>
    <message>
        <source>BLF</source>
        <translation>BLF</translation>
    </message>
    <message>
        <source>BLF List</source>
        <translation>BLF 列表</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/A</translation>
    </message>
    <message>
        <source>Value can't be empty!</source>
        <translation>值不能为空！</translation>
    </message>
    <message>
        <source>Extension is invalid!</source>
        <translation>分机无效！</translation>
    </message>
    <message>
        <source>Delete the record?</source>
        <translation>删除该记录？</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Dial Plan</source>
        <translation>拨号规则</translation>
    </message>
    <message>
        <source>Dial number exist.</source>
        <translation>该前缀已存在。</translation>
    </message>
    <message>
        <source>Prefix</source>
        <translation>前缀</translation>
    </message>
    <message>
        <source>Prefix is empty.</source>
        <translation>前缀不能为空。</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>替换为</translation>
    </message>
    <message>
        <source>Replace is empty.</source>
        <translation>替换内容不能为空。</translation>
    </message>
    <message>
        <source>The dial plan cannot be read!</source>
        <translation>无法读取拨号规则！</translation>
    </message>
    <message>
        <source>The max number should &lt;= 20!</source>
        <translation>最多 20 条记录！</translation>
    </message>
    <message>
        <source>(1-100s)</source>
        <translation>(1-100 秒)</translation>
    </message>
    <message>
        <source>10fps</source>
        <translation>10 帧/秒</translation>
    </message>
    <message>
        <source>128kbps</source>
        <translation>128 kbps</translation>
    </message>
    <message>
        <source>15fps</source>
        <translation>15 帧/秒</translation>
    </message>
    <message>
        <source>192kbps</source>
        <translation>192 kbps</translation>
    </message>
    <message>
        <source>1Mbps</source>
        <translation>1 Mbps</translation>
    </message>
    <message>
        <source>20fps</source>
        <translation>20 帧/秒</translation>
    </message>
    <message>
        <source>256kbps</source>
        <translation>256 kbps</translation>
    </message>
    <message>
        <source>25fps</source>
        <translation>25 帧/秒</translation>
    </message>
    <message>
        <source>30fps</source>
        <translation>30 帧/秒</translation>
    </message>
    <message>
        <source>384kbps</source>
        <translation>384 kbps</translation>
    </message>
    <message>
        <source>512kbps</source>
        <translation>512 kbps</translation>
    </message>
    <message>
        <source>768kbps</source>
        <translation>768 kbps</translation>
    </message>
    <message>
        <source>After 15 Seconds</source>
        <translation>15 秒后</translation>
    </message>
    <message>
        <source>After 30 Seconds</source>
        <translation>30 秒后</translation>
    </message>
    <message>
        <source>After 5 Seconds</source>
        <translation>5 秒后</translation>
    </message>
    <message>
        <source>Always Forward</source>
        <translation>始终转移</translation>
    </message>
    <message>
        <source>Always forward number is invalid!</source>
        <translation>始终转移的号码无效！</translation>
    </message>
    <message>
        <source>Anonymous Call Off code can't be empty!</source>
        <translation>匿名呼叫的关闭代码不能为空！</translation>
    </message>
    <message>
        <source>Anonymous Call Rejection</source>
        <translation>拒接匿名呼叫</translation>
    </message>
    <message>
        <source>Auto Answer Type</source>
        <translation>自动应答类型</translation>
    </message>
    <message>
        <source>Bandwidth</source>
        <translation>带宽</translation>
    </message>
    <message>
        <source>Busy Forward</source>
        <translation>遇忙转移</translation>
    </message>
    <message>
        <source>Busy forward number is invalid!</source>
        <translation>遇忙转移的号码无效！</translation>
    </message>
    <message>
        <source>Can't forward to own number!</source>
        <translation>不能转移到本机号码！</translation>
    </message>
    <message>
        <source>Directly</source>
        <translation>立即</translation>
    </message>
    <message>
        <source>Effect On PSTN</source>
        <translation>对 PSTN 线路有效</translation>
    </message>
    <message>
        <source>Enable Auto Answer</source>
        <translation>启用自动应答</translation>
    </message>
    <message>
        <source>Enable Call Waiting</source>
        <translation>启用呼叫等待</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>已启用</translation>
    </message>
    <message>
        <source>Forward Setting</source>
        <translation>呼叫转移设置</translation>
    </message>
    <message>
        <source>Frame Rate</source>
        <translation>帧率</translation>
    </message>
    <message>
        <source>Hotline Delay(0~10s)</source>
        <translation>热线延时 (0-10 秒)</translation>
    </message>
    <message>
        <source>Hotline Number</source>
        <translation>热线号码</translation>
    </message>
    <message>
        <source>Key #</source>
        <translation># 键</translation>
    </message>
    <message>
        <source>Key *</source>
        <translation>* 键</translation>
    </message>
    <message>
        <source>Local Video</source>
        <translation>本地视频</translation>
    </message>
    <message>
        <source>No Answer Forward</source>
        <translation>无应答转移</translation>
    </message>
    <message>
        <source>No answer forward number is invalid!</source>
        <translation>无应答转移的号码无效！</translation>
    </message>
    <message>
        <source>No answer time is not within 1-100 seconds!</source>
        <translation>无应答时间不在 1-100 秒之间！</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>关</translation>
    </message>
    <message>
        <source>Off Code</source>
        <translation>关闭代码</translation>
    </message>
    <message>
        <source>On</source>
        <translation>开</translation>
    </message>
    <message>
        <source>On Code</source>
        <translation>开启代码</translation>
    </message>
    <message>
        <source>PSTN Call</source>
        <translation>PSTN 呼叫</translation>
    </message>
    <message>
        <source>Preferred Call Type</source>
        <translation>首选呼叫类型</translation>
    </message>
    <message>
        <source>Rejection Off code can't be empty!</source>
        <translation>拒接的关闭代码不能为空！</translation>
    </message>
    <message>
        <source>Time limited(0-10s)!</source>
        <translation>时间限制为 0-10 秒！</translation>
    </message>
    <message>
        <source>Video Call</source>
        <translation>视频呼叫</translation>
    </message>
    <message>
        <source>Voice Call</source>
        <translation>语音呼叫</translation>
    </message>
    <message>
        <source>Add call</source>
        <translation>新增通话</translation>
    </message>
    <message>
        <source>Dial</source>
        <translation>拨号</translation>
    </message>
    <message>
        <source>Forward</source>
        <comment>a call that rings</comment>
        <translation>转移</translation>
    </message>
    <message>
        <source>Video</source>
        <comment>in a call</comment>
        <translation>视频</translation>
    </message>
    <message>
        <source>Held by the other side</source>
        <translation>对方已保持</translation>
    </message>
    <message>
        <source>Not confirmed yet</source>
        <translation>尚未确认</translation>
    </message>
    <message>
        <source>Forwarded by %1</source>
        <translation>由 %1 转移</translation>
    </message>
    <message>
        <source>Forwarded to %1</source>
        <translation>已转移至 %1</translation>
    </message>
    <message>
        <source>Transferred to %1</source>
        <translation>已转接至 %1</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>保持</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>键盘</translation>
    </message>
    <message>
        <source>On hold</source>
        <translation>保持中</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>恢复</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>切换</translation>
    </message>
    <message>
        <source>Conference</source>
        <translation>会议</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>分开</translation>
    </message>
    <message>
        <source>These calls cannot be connected</source>
        <translation>无法连接这些通话</translation>
    </message>
    <message>
        <source>The other side refuses the transfer</source>
        <translation>对方拒绝转接</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>转接</translation>
    </message>
    <message>
        <source>2N</source>
        <translation>2N</translation>
    </message>
    <message>
        <source>Access Pin</source>
        <translation>访问 PIN 码</translation>
    </message>
    <message>
        <source>Account is invalid!</source>
        <translation>账号无效！</translation>
    </message>
    <message>
        <source>Advance</source>
        <translation>高级</translation>
    </message>
    <message>
        <source>Basic</source>
        <translation>基本</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>自定义</translation>
    </message>
    <message>
        <source>Device Model</source>
        <translation>设备型号</translation>
    </message>
    <message>
        <source>Display Name already exists!</source>
        <translation>显示名称已存在！</translation>
    </message>
    <message>
        <source>Display Name is invalid!</source>
        <translation>显示名称无效！</translation>
    </message>
    <message>
        <source>Door Phone 2</source>
        <translation>门口机 2</translation>
    </message>
    <message>
        <source>Door Phone 3</source>
        <translation>门口机 3</translation>
    </message>
    <message>
        <source>Door Phone 4</source>
        <translation>门口机 4</translation>
    </message>
    <message>
        <source>Fullscreen</source>
        <translation>全屏</translation>
    </message>
    <message>
        <source>IP Camera 2</source>
        <translation>网络摄像机 2</translation>
    </message>
    <message>
        <source>IP Camera 3</source>
        <translation>网络摄像机 3</translation>
    </message>
    <message>
        <source>IP Camera 4</source>
        <translation>网络摄像机 4</translation>
    </message>
    <message>
        <source>IP Camera Setting</source>
        <translation>网络摄像机设置</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>序号</translation>
    </message>
    <message>
        <source>Line1</source>
        <translation>线路 1</translation>
    </message>
    <message>
        <source>Line2</source>
        <translation>线路 2</translation>
    </message>
    <message>
        <source>Line3</source>
        <translation>线路 3</translation>
    </message>
    <message>
        <source>Line4</source>
        <translation>线路 4</translation>
    </message>
    <message>
        <source>Linkcom</source>
        <translation>Linkcom</translation>
    </message>
    <message>
        <source>Mobotix</source>
        <translation>Mobotix</translation>
    </message>
    <message>
        <source>Not Send Audio</source>
        <translation>不发送音频</translation>
    </message>
    <message>
        <source>Not Send Video</source>
        <translation>不发送视频</translation>
    </message>
    <message>
        <source>Refuse New Incoming Call</source>
        <translation>拒绝新来电</translation>
    </message>
    <message>
        <source>Unlock Pin</source>
        <translation>开门 PIN 码</translation>
    </message>
    <message>
        <source>Voice Mail Setting</source>
        <translation>语音信箱设置</translation>
    </message>
    <message>
        <source>Voice mail number is invalid!</source>
        <translation>语音信箱号码无效！</translation>
    </message>
    <message>
        <source>Voice mail number is invalid!!</source>
        <translation>语音信箱号码无效！！</translation>
    </message>
    <message>
        <source>new</source>
        <translation>条新</translation>
    </message>
    <message>
        <source>old</source>
        <translation>条旧</translation>
    </message>
    <message>
        <source>Open door</source>
        <translation>开门</translation>
    </message>
    <message>
        <source>Add %1 ?</source>
        <translation>添加 %1？</translation>
    </message>
    <message>
        <source>Add Stock</source>
        <translation>添加股票</translation>
    </message>
    <message>
        <source>Add stock</source>
        <translation>添加股票</translation>
    </message>
    <message>
        <source>Ask Price</source>
        <translation>卖价</translation>
    </message>
    <message>
        <source>Bid Price</source>
        <translation>买价</translation>
    </message>
    <message>
        <source>Delete Stock</source>
        <translation>删除股票</translation>
    </message>
    <message>
        <source>Delete stock</source>
        <translation>删除股票</translation>
    </message>
    <message>
        <source>High</source>
        <translation>最高</translation>
    </message>
    <message>
        <source>Input is empty!</source>
        <translation>输入为空！</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>最低</translation>
    </message>
    <message>
        <source>Market Cap</source>
        <translation>市值</translation>
    </message>
    <message>
        <source>NetWork is not good, please wait for a while!</source>
        <translation>网络状况不佳，请稍候！</translation>
    </message>
    <message>
        <source>No site information</source>
        <translation>没有该股票的信息</translation>
    </message>
    <message>
        <source>Opening Price</source>
        <translation>开盘价</translation>
    </message>
    <message>
        <source>Prev Closing Price</source>
        <translation>昨收价</translation>
    </message>
    <message>
        <source>Stock is full!</source>
        <translation>股票列表已满！</translation>
    </message>
    <message>
        <source>The stock is existed!</source>
        <translation>该股票已存在！</translation>
    </message>
    <message>
        <source>Unable connect to Stock server, please check network.</source>
        <translation>无法连接股票服务器，请检查网络。</translation>
    </message>
    <message>
        <source>Updated:</source>
        <translation>更新时间：</translation>
    </message>
    <message>
        <source>data exception.</source>
        <translation>数据异常。</translation>
    </message>
    <message>
        <source>Can't connect</source>
        <translation>无法连接</translation>
    </message>
    <message>
        <source>Set Desktop</source>
        <translation>设到桌面</translation>
    </message>
    <message>
        <source>Succeed to Set Desktop!</source>
        <translation>已设到桌面！</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>温度</translation>
    </message>
</context>
</TS>
